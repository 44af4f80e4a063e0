// Importing audio and launching the worker on it.
#include "AppModelTest.h"

#include <QSemaphore>

using namespace corvane;

TEST_F(AppModelTest, ImportingMakesAMeetingOfACopy) {
    makeRun("R", "Run", "M", 300);
    const QString source = data.paths.root + u"/My talk.v1.M4A"_s;
    writeFileAtomically(source, QByteArray(2'500'000, 'a'));
    AppModel& model = fixture.start();
    model.diarizationDefaults().updateDefaultSpeakerCount(5);
    const QString id = ModelFixture::resultOf(model.importAudioFile(source)).value();
    EXPECT_EQ(status(model), u"Imported My talk.v1.M4A"_s);
    const MeetingDraftMetadata draft = readMeetingDraft(data.paths.meeting(id)).value();
    EXPECT_EQ(draft.title, u"My talk.v1"_s);
    EXPECT_TRUE(draft.audioPath.endsWith(u".M4A"_s));
    EXPECT_FALSE(draft.audioPath.contains(id));
    EXPECT_EQ(readFile(draft.audioPath), readFile(source));
    EXPECT_EQ(draft.settings.speakerCount, 5);
    EXPECT_EQ(draft.settings.language, u"fr"_s);
    EXPECT_EQ(model.selectedMeeting()->id, id);
    EXPECT_FALSE(model.library().importProgress());

    EXPECT_FALSE(ModelFixture::resultOf(model.importAudioFile(u"/nowhere/x.wav"_s)));
    EXPECT_EQ(status(model), u"Failed to import audio: x.wav: No such file or directory"_s);
    EXPECT_EQ(model.selectedMeeting()->id, id);
    auto abandoned = model.importAudioFile(source);
    fixture.stop();
    EXPECT_TRUE(loopUntil([&] { return abandoned.isFinished(); }));
}

TEST_F(AppModelTest, ProcessingLaunchesTheWorkerAndShowsTheNewRun) {
    makeDraft("M", "Draft", 300);
    AppModel& model = fixture.start();
    select(model, "M");
    ProcessingSettings settings = model.detail().settings();
    settings.speakerCountMode = u"range"_s;
    settings.language = u"de"_s;
    model.detail().setSettings(settings);
    model.localModel().updateUseOllamaSpeakerContext(true);
    for (int times = 1; times <= 2; ++times) {
        const QString run = ModelFixture::resultOf(model.processCurrentAudio()).value();
        EXPECT_EQ(model.detail().lastRunDirectory(), run);
        EXPECT_EQ(model.selectedMeeting()->id, u"M"_s);
        EXPECT_EQ(listed(model, "M").runURLs.size(), static_cast<std::size_t>(times));
        EXPECT_EQ(listed(model, "M").latestRun, run);
        EXPECT_TRUE(model.isProcessing());
        EXPECT_EQ(status(model), u"Running"_s);
        const RunAppMetadata record = readRunAppMetadata(run).value();
        EXPECT_EQ(record.title, u"Draft"_s);
        EXPECT_EQ(record.settings, settings);
        EXPECT_EQ(record.audioPath, data.recording(u"M.wav"_s));
    }
    const ProcessRequest request = fixture.processes->launched().back();
    EXPECT_EQ(request.arguments.mid(9).join(u' '), u"--language de --min-speakers 1 --max-speakers 8"_s);
    EXPECT_EQ(request.environment.at(u"CORVANE_WORKER_LLM"_s), u"ollama"_s);

    ASSERT_TRUE(QFile::remove(worker));
    EXPECT_FALSE(ModelFixture::resultOf(model.processCurrentAudio()));
    EXPECT_EQ(status(model), u"corvane-worker not found"_s);
}

TEST_F(AppModelTest, ALaunchWithAnOddNameOrAFailureLosesNothing) {
    const QString audio = data.recording(u"a\\q.wav"_s);
    writeFileAtomically(audio, "x");
    AppModel& model = fixture.start();
    EXPECT_EQ(model.currentAudioURL(), audio) << "the latest recording";
    const QString run = ModelFixture::resultOf(model.processCurrentAudio()).value();
    EXPECT_EQ(readRunAppMetadata(run)->audioPath, QString());
    EXPECT_EQ(readRunAppMetadata(run)->meetingID, run);
    EXPECT_EQ(model.library().selectedSidebarItem(), SidebarItem::meeting(run));

    // The worker vanishes while the token store is asked.
    fixture.tokens->answer = [this]() -> std::optional<QString> {
        QFile::remove(worker);
        return std::nullopt;
    };
    EXPECT_FALSE(ModelFixture::resultOf(model.processCurrentAudio()));
    EXPECT_EQ(status(model), u"Failed to launch worker: No such file or directory"_s);
    EXPECT_EQ(model.detail().lastRunDirectory(), run);
    EXPECT_FALSE(model.jobs().isLaunching());
}

TEST_F(AppModelTest, AUserWhoMovedOnIsNotCalledBackByASlowTokenStore) {
    makeDraft("A", "A", 300);
    makeDraft("B", "B", 200);
    QSemaphore mayAnswer;
    fixture.tokens->answer = [&]() -> std::optional<QString> {
        mayAnswer.acquire();
        return std::nullopt;
    };
    AppModel& model = fixture.start();
    select(model, "A");
    auto launch = model.processCurrentAudio();
    EXPECT_TRUE(model.jobs().isLaunching());
    EXPECT_FALSE(ModelFixture::resultOf(model.processCurrentAudio())) << "one launch at a time";
    select(model, "B");
    mayAnswer.release();
    const QString run = ModelFixture::resultOf(launch).value();
    EXPECT_EQ(model.selectedMeeting()->id, u"B"_s);
    EXPECT_EQ(listed(model, "A").latestRun, run);
    EXPECT_EQ(readRunAppMetadata(run)->title, u"A"_s);

    auto abandoned = model.processCurrentAudio();
    fixture.stop();
    mayAnswer.release();
    EXPECT_TRUE(loopUntil([&] { return abandoned.isFinished(); }));
    EXPECT_EQ(fixture.processes->launched().size(), 1U);
}
