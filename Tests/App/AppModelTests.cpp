// The operations of the model on the list and on what is shown, over a real data directory.
#include "AppModelTest.h"

using namespace corvane;

TEST_F(AppModelTest, AFirstLaunchMakesTheDirectoriesAndShowsTheSettings) {
    ASSERT_TRUE(QDir(data.paths.root).removeRecursively());
    AppModel& model = fixture.start();
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::settings());
    EXPECT_TRUE(model.library().meetings().empty());
    EXPECT_EQ(status(model), QStringLiteral("Idle"));
    EXPECT_FALSE(model.detail().lastRunDirectory() || model.currentAudioURL() || model.canProcess());
    for (const QString& directory :
         {data.paths.root, data.paths.recordings(), data.paths.runs(), data.paths.meetings(), data.paths.logs()})
        EXPECT_TRUE(QDir(directory).exists());
    model.openLastRun();
    EXPECT_EQ(fixture.workspace->opened, QStringList(data.paths.root));
    model.renameSelectedRun(QStringLiteral(" only a title "));
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("only a title"));
    EXPECT_EQ(status(model), QStringLiteral("Idle"));
}

TEST_F(AppModelTest, ALaunchSurvivesADataDirectoryThatCannotBeMade) {
    ASSERT_TRUE(QDir(data.paths.root).removeRecursively());
    writeFileAtomically(data.paths.root, "a file in the way");
    AppModel& model = fixture.start();
    EXPECT_EQ(status(model),
              QStringLiteral("Failed to load speaker profiles: openFailed: unable to open database file"));
    EXPECT_FALSE(ModelFixture::resultOf(model.importAudioFile(data.paths.root)));
    EXPECT_TRUE(status(model).startsWith(QLatin1String("Failed to import audio: "))) << status(model).toStdString();
}

TEST_F(AppModelTest, ANewestMeetingWithoutRunsIsLoadedButNotSelected) {
    makeRun("R", "Old run", "M", 100);
    const QString draft = makeDraft("D", "Draft", 200, "recording");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("Draft"));
    EXPECT_EQ(model.detail().settings().speakerIdentificationContext, QStringLiteral("Ada speaks first"));
    EXPECT_EQ(model.detail().lastRunDirectory(), draft);
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(draft));
    EXPECT_FALSE(model.selectedMeeting() || model.hasRecoverableRecording());
    EXPECT_EQ(status(model), QStringLiteral("Meeting in progress"));
    EXPECT_EQ(model.recording().recordingElapsed(), 90.0);

    select(model, "D");
    EXPECT_EQ(model.selectedMeeting()->id, QStringLiteral("D"));
    EXPECT_TRUE(model.hasRecoverableRecording());
    EXPECT_EQ(model.currentAudioURL(), data.recording(QStringLiteral("D.wav")));
    select(model, "M");
    EXPECT_FALSE(model.hasRecoverableRecording());
    EXPECT_EQ(model.detail().settings().language, QStringLiteral("de"));
    EXPECT_EQ(status(model), QStringLiteral("Completed"));
    select(model, "gone");
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(QStringLiteral("gone")));
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("Old run"));
}

TEST_F(AppModelTest, ADraftShowsItsOwnSettingsOrTheDefaults) {
    fixture.defaults->set(QStringLiteral("defaultSpeakerCount"), std::int64_t{4});
    makeRun("R", "Run", "M", 100);
    const QString draft = makeDraft("D", "Draft", 50, "recorded");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().settings().speakerCount, 2) << "a run's record without the key";
    select(model, "D");
    EXPECT_EQ(status(model), QStringLiteral("Imported"));
    EXPECT_FALSE(model.jobs().jobState());
    const MeetingListItem meeting = listed(model, "D");
    writeFileAtomically(draft + QStringLiteral("/metadata.json"), "{");
    model.selectMeeting(meeting);
    EXPECT_EQ(model.detail().settings().speakerCount, 4);
    EXPECT_EQ(model.detail().settings().speakerIdentificationContext, QString());
    EXPECT_EQ(model.recording().recordingElapsed(), 0);
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("Draft"));
}

TEST_F(AppModelTest, ThePollFollowsTheShownRunUntilOneRefreshAfterItsEnd) {
    const QString run = makeRun("R", "Run", "M", 200, "running");
    makeRun("OTHER", "Other", "N", 100, "running");
    const QString audio = data.recording(QStringLiteral("M.wav"));
    writeFileAtomically(audio, "x");
    fixture.audioFiles->setDuration(audio, 100);
    data.write(QStringLiteral("R"), runFiles::events,
               encodeWorkerJobEvent(jobEvents::jobStarted, fixture.clock->now()));
    AppModel& model = fixture.start();
    EXPECT_TRUE(model.isProcessing());
    EXPECT_FALSE(model.canProcess());
    fixture.clock->advance(50);
    model.pollTick();
    EXPECT_DOUBLE_EQ(model.jobs().runProgress().estimatedProgress, 0.5);
    data.writeState(QStringLiteral("OTHER"), QStringLiteral("failed"));
    TranscriptResult result = speechResult(2);
    result.speakerNames = {{QStringLiteral("SPEAKER_00"), QStringLiteral("Ada")}};
    data.write(QStringLiteral("R"), runFiles::result, encodeTranscriptResult(result));
    data.write(QStringLiteral("R"), runFiles::transcriptText, "text\n");
    data.writeState(QStringLiteral("R"), QStringLiteral("completed with care"));
    DataDirectoryBuilder::setModified(run, 200);
    model.detail().setIsEditingSelectedTitle(true);
    model.detail().setSelectedTitle(QStringLiteral("being typed"));
    model.pollTick();
    EXPECT_EQ(status(model), QStringLiteral("Completed With Care"));
    EXPECT_TRUE(model.canProcess());
    EXPECT_EQ(model.detail().transcriptResult(), result);
    EXPECT_EQ(model.detail().transcriptText(), QStringLiteral("text\n"));
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("being typed"));
    EXPECT_EQ(
        model.speakerReview().speakerMappings(),
        (SpeakerNames{{QStringLiteral("SPEAKER_00"), QStringLiteral("Ada")}, {QStringLiteral("SPEAKER_01"), {}}}));
    EXPECT_EQ(listed(model, "N").status, QStringLiteral("failed"));
    // At the next tick neither side runs, and the details are left alone.
    data.write(QStringLiteral("R"), runFiles::transcriptText, "changed\n");
    model.pollTick();
    EXPECT_EQ(model.detail().transcriptText(), QStringLiteral("text\n"));

    model.speakerReview().setName(QStringLiteral("SPEAKER_01"), QStringLiteral("Zoë "));
    EXPECT_TRUE(model.saveSpeakerMappings());
    EXPECT_TRUE(model.detail().transcriptText().contains(QStringLiteral("Ada: Thanks")));
    EXPECT_EQ(model.detail().transcriptResult()->speakerNames.at(QStringLiteral("SPEAKER_01")), QStringLiteral("Zoë "));
    data.writeState(QStringLiteral("R"), QStringLiteral("running"));
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
    model.renameSelectedRun(QStringLiteral(" \n New \"name\" \t"));
    EXPECT_EQ(status(model), QStringLiteral("Renamed"));
    for (const QString& run : {newest, older}) {
        EXPECT_EQ(readRunAppMetadata(run)->title, QStringLiteral("New \"name\""));
        EXPECT_EQ(readRunAppMetadata(run)->settings.language, QStringLiteral("de"));
        EXPECT_EQ(readRunAppMetadata(run)->meetingID, QStringLiteral("M"));
    }
    EXPECT_EQ(listed(model, "M").title, QStringLiteral("New \"name\""));
    model.renameSelectedRun(QStringLiteral("  "));
    EXPECT_EQ(model.detail().selectedTitle(), QString());
    EXPECT_EQ(listed(model, "M").title, QStringLiteral("M")) << "the name of its audio";

    select(model, "D");
    model.renameSelectedRun(QStringLiteral("D2"));
    const MeetingDraftMetadata renamed = readMeetingDraft(draft).value();
    EXPECT_EQ(renamed.title, QStringLiteral("D2"));
    EXPECT_EQ(renamed.recordingStatus, QStringLiteral("imported"));
    EXPECT_TRUE(renamed.chunks.empty() && !renamed.startedAt);
    EXPECT_EQ(renamed.settings.speakerIdentificationContext, QStringLiteral("Ada speaks first"));
    EXPECT_EQ(renamed.audioPath, data.recording(QStringLiteral("D.wav")));

    // Each write has made its run the newest.
    DataDirectoryBuilder::setModified(newest, 2'000'000'000);
    model.pollTick();
    select(model, "M");
    ASSERT_EQ(model.detail().lastRunDirectory(), newest);
    ASSERT_TRUE(QDir(newest).removeRecursively());
    model.renameSelectedRun(QStringLiteral("lost"));
    EXPECT_EQ(status(model), QStringLiteral("Failed to rename: app_metadata.json: No such file or directory"));
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
    ASSERT_TRUE(QFile::remove(run + QStringLiteral("/app_metadata.json")));
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
    defaults.updateDefaultSpeakerCountMode(QStringLiteral("exact"));
    EXPECT_EQ(fixture.defaults->string(QStringLiteral("defaultSpeakerCountMode")), QStringLiteral("auto"));
}

TEST_F(AppModelTest, DeletingRemovesRunsDraftAndOnlyRecordedAudio) {
    const QString run = makeRun("R", "Run", "M", 300);
    makeRun("R2", "Run", "M", 200);
    const QString draft = makeDraft("M", "Hidden draft", 250);
    makeDraft("NEXT", "Next", 100);
    const QString audio = data.recording(QStringLiteral("M.wav"));
    const QString spare = data.recording(QStringLiteral("spare.wav"));
    const QString elsewhere = data.paths.root + QStringLiteral("/elsewhere.wav");
    for (const QString& file : {audio, spare, elsewhere})
        writeFileAtomically(file, "x");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.detail().lastRunDirectory(), run);
    model.deleteMeeting(listed(model, "M"), true);
    EXPECT_EQ(status(model), QStringLiteral("Deleted"));
    EXPECT_TRUE(QDir(data.paths.runs()).isEmpty());
    EXPECT_FALSE(QFile::exists(draft) || QFile::exists(audio));
    EXPECT_TRUE(QFile::exists(spare));
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(QStringLiteral("NEXT")));
    EXPECT_EQ(model.detail().selectedTitle(), QStringLiteral("Next"));
    EXPECT_EQ(model.library().lastRecording(), spare);

    MeetingListItem next = listed(model, "NEXT");
    next.audioURL = elsewhere;
    model.deleteMeeting(next, true);
    EXPECT_TRUE(QFile::exists(elsewhere));
    EXPECT_FALSE(model.library().selectedSidebarItem());
    EXPECT_EQ(model.detail().lastRunDirectory(), data.paths.meeting(QStringLiteral("NEXT")));
    EXPECT_EQ(status(model), QStringLiteral("Deleted"));
    model.pollTick();

    // The audio stays unless it is asked for.
    makeRun("R3", "Run", "K", 300);
    writeFileAtomically(data.recording(QStringLiteral("K.wav")), "x");
    model.reloadMeetings();
    model.deleteMeeting(listed(model, "K"), false);
    EXPECT_TRUE(QFile::exists(data.recording(QStringLiteral("K.wav"))));
}

TEST_F(AppModelTest, AChangeIsAnnouncedBeforeAndAfterItAndNoChangeIsNot) {
    makeRun("R", "Run", "M", 300);
    AppModel& model = fixture.start();
    QStringList heard;
    QObject::connect(&model.library(), &ModelPart::aboutToChange, &model, [&](const char* field) {
        heard.append(QStringLiteral("%1 from %2").arg(QLatin1String(field)).arg(model.library().meetings().size()));
    });
    QObject::connect(&model.library(), &LibraryPart::meetingsChanged, &model,
                     [&] { heard.append(QStringLiteral("changed to %1").arg(model.library().meetings().size())); });
    model.pollTick();
    EXPECT_EQ(heard, QStringList());
    makeDraft("D", "Draft", 100);
    model.pollTick();
    model.pollTick();
    EXPECT_EQ(heard, QStringList({QStringLiteral("meetings from 1"), QStringLiteral("changed to 2")}));
}
