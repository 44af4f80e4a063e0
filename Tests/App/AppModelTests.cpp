// The operations of the model on the list and on what is shown, over a real data directory.
#include "AppModelTest.h"

using namespace corvane;

TEST_F(AppModelTest, AFirstLaunchMakesTheDirectoriesAndShowsTheSettings) {
    ASSERT_TRUE(QDir(data.paths.root).removeRecursively());
    AppModel& model = fixture.start();
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::settings());
    EXPECT_TRUE(model.library().meetings().empty());
    EXPECT_EQ(status(model), u"Idle"_s);
    EXPECT_FALSE(model.detail().lastRunDirectory() || model.currentAudioURL() || model.canProcess());
    EXPECT_TRUE(QDir(data.paths.logs()).exists());
    model.openLastRun();
    EXPECT_EQ(fixture.workspace->opened, QStringList(data.paths.root));
    model.renameSelectedRun(u" only a title "_s);
    EXPECT_EQ(model.detail().selectedTitle(), u"only a title"_s);
    EXPECT_EQ(status(model), u"Idle"_s);
}

TEST_F(AppModelTest, ALaunchSurvivesADataDirectoryThatCannotBeMade) {
    ASSERT_TRUE(QDir(data.paths.root).removeRecursively());
    writeFileAtomically(data.paths.root, "a file in the way");
    AppModel& model = fixture.start();
    EXPECT_EQ(status(model), u"Failed to load speaker profiles: openFailed: unable to open database file"_s);
    EXPECT_FALSE(ModelFixture::resultOf(model.importAudioFile(data.paths.root)));
    EXPECT_TRUE(status(model).startsWith(u"Failed to import audio: "_s)) << status(model).toStdString();
}

TEST_F(AppModelTest, ANewestMeetingWithoutRunsIsLoadedButNotSelected) {
    makeRun("R", "Old run", "M", 100);
    const QString draft = makeDraft("D", "Draft", 200, "recording");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().selectedTitle(), u"Draft"_s);
    EXPECT_EQ(model.detail().settings().speakerIdentificationContext, u"Ada speaks first"_s);
    EXPECT_EQ(model.detail().lastRunDirectory(), draft);
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(draft));
    EXPECT_FALSE(model.selectedMeeting() || model.hasRecoverableRecording());
    EXPECT_EQ(status(model), u"Meeting in progress"_s);
    EXPECT_EQ(model.recording().recordingElapsed(), 90.0);

    select(model, "D");
    EXPECT_EQ(model.selectedMeeting()->id, u"D"_s);
    EXPECT_TRUE(model.hasRecoverableRecording());
    EXPECT_EQ(model.currentAudioURL(), data.recording(u"D.wav"_s));
    select(model, "M");
    EXPECT_FALSE(model.hasRecoverableRecording());
    EXPECT_EQ(model.detail().settings().language, u"de"_s);
    EXPECT_EQ(status(model), u"Completed"_s);
    select(model, "gone");
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(u"gone"_s));
    EXPECT_EQ(model.detail().selectedTitle(), u"Old run"_s);
}

TEST_F(AppModelTest, ADraftShowsItsOwnSettingsOrTheDefaults) {
    fixture.defaults->set(u"defaultSpeakerCount"_s, std::int64_t{4});
    makeRun("R", "Run", "M", 100);
    const QString draft = makeDraft("D", "Draft", 50, "recorded");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().settings().speakerCount, 2) << "a run's record without the key";
    select(model, "D");
    EXPECT_EQ(status(model), u"Imported"_s);
    EXPECT_FALSE(model.jobs().jobState());
    const MeetingListItem meeting = listed(model, "D");
    writeFileAtomically(draft + u"/metadata.json"_s, "{");
    model.selectMeeting(meeting);
    EXPECT_EQ(model.detail().settings().speakerCount, 4);
    EXPECT_EQ(model.detail().settings().speakerIdentificationContext, QString());
    EXPECT_EQ(model.recording().recordingElapsed(), 0);
    EXPECT_EQ(model.detail().selectedTitle(), u"Draft"_s);
}

TEST_F(AppModelTest, ThePollFollowsTheShownRunUntilOneRefreshAfterItsEnd) {
    const QString run = makeRun("R", "Run", "M", 200, "running");
    makeRun("OTHER", "Other", "N", 100, "running");
    const QString audio = data.recording(u"M.wav"_s);
    writeFileAtomically(audio, "x");
    fixture.audioFiles->setDuration(audio, 100);
    data.write(u"R"_s, runFiles::events, encodeWorkerJobEvent(jobEvents::jobStarted, fixture.clock->now()));
    AppModel& model = fixture.start();
    EXPECT_TRUE(model.isProcessing());
    EXPECT_FALSE(model.canProcess());
    fixture.clock->advance(50);
    model.pollTick();
    EXPECT_DOUBLE_EQ(model.jobs().runProgress().estimatedProgress, 0.5);
    data.writeState(u"OTHER"_s, u"failed"_s);
    TranscriptResult result = speechResult(2);
    result.speakerNames = {{u"SPEAKER_00"_s, u"Ada"_s}};
    data.write(u"R"_s, runFiles::result, encodeTranscriptResult(result));
    data.write(u"R"_s, runFiles::transcriptText, "text\n");
    data.writeState(u"R"_s, u"completed with care"_s);
    DataDirectoryBuilder::setModified(run, 200);
    model.detail().setIsEditingSelectedTitle(true);
    model.detail().setSelectedTitle(u"being typed"_s);
    model.pollTick();
    EXPECT_EQ(status(model), u"Completed With Care"_s);
    EXPECT_TRUE(model.canProcess());
    EXPECT_EQ(model.detail().transcriptResult(), result);
    EXPECT_EQ(model.detail().transcriptText(), u"text\n"_s);
    EXPECT_EQ(model.detail().selectedTitle(), u"being typed"_s);
    EXPECT_EQ(model.speakerReview().speakerMappings(),
              (SpeakerNames{{u"SPEAKER_00"_s, u"Ada"_s}, {u"SPEAKER_01"_s, {}}}));
    EXPECT_EQ(listed(model, "N").status, u"failed"_s);
    // At the next tick neither side runs, and the details are left alone.
    data.write(u"R"_s, runFiles::transcriptText, "changed\n");
    model.pollTick();
    EXPECT_EQ(model.detail().transcriptText(), u"text\n"_s);

    model.speakerReview().setName(u"SPEAKER_01"_s, u"Zoë "_s);
    EXPECT_TRUE(model.saveSpeakerMappings());
    EXPECT_TRUE(model.detail().transcriptText().contains(u"Ada: Thanks"_s));
    EXPECT_EQ(model.detail().transcriptResult()->speakerNames.at(u"SPEAKER_01"_s), u"Zoë "_s);
    data.writeState(u"R"_s, u"running"_s);
    model.pollTick();
    ASSERT_TRUE(QDir(run).removeRecursively());
    model.pollTick();
    EXPECT_FALSE(model.isProcessing());
}

TEST_F(AppModelTest, RenamingTouchesAllRunsOfAMeetingOrReplacesADraft) {
    const QString newest = makeRun("NEW", "Run", "M", 300);
    const QString older = makeRun("OLDER", "Run", "M", 200);
    const QString gone = makeRun("GONE", "Run", "M", 100);
    const QString draft = makeDraft("D", "Draft", 50, "recording");
    AppModel& model = fixture.start();
    ASSERT_TRUE(QDir(gone).removeRecursively()) << "an older run that cannot be written, which is ignored";
    model.renameSelectedRun(u" \n New \"name\" \t"_s);
    EXPECT_EQ(status(model), u"Renamed"_s);
    for (const QString& run : {newest, older}) {
        EXPECT_EQ(readRunAppMetadata(run)->title, u"New \"name\""_s);
        EXPECT_EQ(readRunAppMetadata(run)->settings.language, u"de"_s);
        EXPECT_EQ(readRunAppMetadata(run)->meetingID, u"M"_s);
    }
    EXPECT_EQ(listed(model, "M").title, u"New \"name\""_s);
    model.renameSelectedRun(u"  "_s);
    EXPECT_EQ(model.detail().selectedTitle(), QString());
    EXPECT_EQ(listed(model, "M").title, u"M"_s) << "the name of its audio";

    select(model, "D");
    model.renameSelectedRun(u"D2"_s);
    const MeetingDraftMetadata renamed = readMeetingDraft(draft).value();
    EXPECT_EQ(renamed.title, u"D2"_s);
    EXPECT_EQ(renamed.recordingStatus, u"imported"_s);
    EXPECT_TRUE(renamed.chunks.empty() && !renamed.startedAt);
    EXPECT_EQ(renamed.settings.speakerIdentificationContext, u"Ada speaks first"_s);
    EXPECT_EQ(renamed.audioPath, data.recording(u"D.wav"_s));

    // Each write has made its run the newest.
    DataDirectoryBuilder::setModified(newest, 2'000'000'000);
    model.pollTick();
    select(model, "M");
    ASSERT_EQ(model.detail().lastRunDirectory(), newest);
    ASSERT_TRUE(QDir(newest).removeRecursively());
    model.renameSelectedRun(u"lost"_s);
    EXPECT_EQ(status(model), u"Failed to rename: app_metadata.json: No such file or directory"_s);
    EXPECT_EQ(readRunAppMetadata(older)->title, QString());
}

TEST_F(AppModelTest, SettingsOfTheShownMeetingArePersisted) {
    const QString draft = makeDraft("D", "Draft", 300, "paused");
    const QString run = makeRun("R", "Run", "M", 100);
    AppModel& model = fixture.start();
    select(model, "D");
    ProcessingSettings settings = model.detail().settings();
    settings.minSpeakerCount = 9;
    settings.maxSpeakerCount = 3;
    model.detail().setSettings(settings);
    const MeetingDraftMetadata before = readMeetingDraft(draft).value();
    model.persistCurrentMeetingSettings();
    MeetingDraftMetadata expected = before;
    expected.settings.minSpeakerCount = expected.settings.maxSpeakerCount = 9;
    EXPECT_EQ(readMeetingDraft(draft), expected);

    select(model, "M");
    ASSERT_TRUE(QFile::remove(run + u"/app_metadata.json"_s));
    model.persistCurrentMeetingSettings();
    const RunAppMetadata written = readRunAppMetadata(run).value();
    EXPECT_EQ(written.settings, model.detail().settings());
    EXPECT_TRUE(written.title.isEmpty() && written.audioPath.isEmpty() && !written.meetingID);
}

TEST_F(AppModelTest, DefaultsAreCorrectedStoredAndLeaveTheMeetingAlone) {
    DiarizationDefaultsPart& defaults = fixture.start().diarizationDefaults();
    const auto stored = [&](const char* key) {
        return fixture.defaults->integer(QString::fromLatin1(key)).value_or(-1);
    };
    defaults.updateDefaultMinSpeakerCount(10);
    EXPECT_EQ(stored("defaultMinSpeakerCount"), 8);
    defaults.updateDefaultMinSpeakerCount(0);
    EXPECT_EQ(stored("defaultMinSpeakerCount"), 1);
    defaults.updateDefaultMinSpeakerCount(2);
    defaults.updateDefaultMaxSpeakerCount(0);
    EXPECT_EQ(stored("defaultMaxSpeakerCount"), 2);
    defaults.updateDefaultSpeakerCount(-5);
    EXPECT_EQ(stored("defaultSpeakerCount"), 1);
    defaults.updateDefaultSpeakerCountMode(u"exact"_s);
    EXPECT_EQ(fixture.defaults->string(u"defaultSpeakerCountMode"_s), u"auto"_s);
}

TEST_F(AppModelTest, DeletingRemovesRunsDraftAndOnlyRecordedAudio) {
    const QString run = makeRun("R", "Run", "M", 300);
    makeRun("R2", "Run", "M", 200);
    const QString draft = makeDraft("M", "Hidden draft", 250);
    makeDraft("NEXT", "Next", 100);
    const QString audio = data.recording(u"M.wav"_s);
    const QString spare = data.recording(u"spare.wav"_s);
    const QString elsewhere = data.paths.root + u"/elsewhere.wav"_s;
    for (const QString& file : {audio, spare, elsewhere})
        writeFileAtomically(file, "x");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().lastRunDirectory(), run);
    model.deleteMeeting(listed(model, "M"), true);
    EXPECT_EQ(status(model), u"Deleted"_s);
    EXPECT_TRUE(QDir(data.paths.runs()).isEmpty());
    EXPECT_FALSE(QFile::exists(draft) || QFile::exists(audio));
    EXPECT_TRUE(QFile::exists(spare));
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(u"NEXT"_s));
    EXPECT_EQ(model.detail().selectedTitle(), u"Next"_s);
    EXPECT_EQ(model.library().lastRecording(), spare);

    MeetingListItem next = listed(model, "NEXT");
    next.audioURL = elsewhere;
    model.deleteMeeting(next, true);
    EXPECT_TRUE(QFile::exists(elsewhere));
    EXPECT_FALSE(model.library().selectedSidebarItem());
    EXPECT_EQ(model.detail().lastRunDirectory(), data.paths.meeting(u"NEXT"_s));
    EXPECT_EQ(status(model), u"Deleted"_s);
    model.pollTick();

    // The audio stays unless it is asked for.
    makeRun("R3", "Run", "K", 300);
    writeFileAtomically(data.recording(u"K.wav"_s), "x");
    model.reloadMeetings();
    model.deleteMeeting(listed(model, "K"), false);
    EXPECT_TRUE(QFile::exists(data.recording(u"K.wav"_s)));
}

TEST_F(AppModelTest, AChangeIsAnnouncedBeforeAndAfterItAndNoChangeIsNot) {
    makeRun("R", "Run", "M", 300);
    AppModel& model = fixture.start();
    QStringList heard;
    QObject::connect(&model.library(), &ModelPart::aboutToChange, &model, [&](const char* field) {
        heard.append(u"%1 from %2"_s.arg(QLatin1String(field)).arg(model.library().meetings().size()));
    });
    QObject::connect(&model.library(), &LibraryPart::meetingsChanged, &model,
                     [&] { heard.append(u"changed to %1"_s.arg(model.library().meetings().size())); });
    model.pollTick();
    EXPECT_EQ(heard, QStringList());
    makeDraft("D", "Draft", 100);
    model.pollTick();
    model.pollTick();
    EXPECT_EQ(heard, QStringList({u"meetings from 1"_s, u"changed to 2"_s}));
}
