// The life of a recording over a real data directory, with devices that the test feeds.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/PrintQt.h"
#include "Support/WavFiles.h"

#include "CorvaneCore/Library/FileNames.h"

#include <gmock/gmock.h>

using namespace corvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RecordingTest : public testing::Test {
protected:
    RecordingTest() {
        fixture.audioInputs->systemDevice->format.sample = AudioFormat::Sample::float32;
        fixture.audioInputs->microphoneDevice->format.sample = AudioFormat::Sample::float32;
    }
    static QString status(AppModel& model) { return model.status().statusMessage(); }
    [[nodiscard]] QString directoryOf(const QString& id) const { return data.paths.meeting(id); }
    [[nodiscard]] MeetingDraftMetadata draftOf(const QString& id) const {
        return readMeetingDraft(directoryOf(id)).value();
    }
    static QString current(AppModel& model) { return model.recording().currentRecordingMeetingID().value(); }
    AppModel& startMicrophoneOnly(const char* title = nullptr) {
        AppModel& model = fixture.start();
        model.setSystemAudioCaptureMode(SystemAudioCaptureMode::off);
        model.startRecording(title ? std::optional(QString::fromUtf8(title)) : std::nullopt);
        return model;
    }
    void speak(std::size_t frames, float level = 0.5F) {
        EXPECT_TRUE(fixture.audioInputs->microphoneDevice->deliver(std::vector<float>(frames, level)));
    }
    static std::optional<QString> stop(AppModel& model) {
        return ModelFixture::resultOf(model.stopRecording(AppModel::AfterStop::leave));
    }
    // What a process leaves that dies while it records.
    QString makeDeadRecording(const char* id, const char* recordingStatus = "recording") {
        const QString chunks = directoryOf(QString::fromUtf8(id)) + u"/chunks"_s;
        createPrivateDirectory(chunks);
        for (const char* name : {"000000.wav", "000003.WAV"})
            writeWav(chunks + u'/' + QString::fromUtf8(name),
                     {.sampleRate = 48'000, .channels = 1, .sample = AudioFormat::Sample::float32},
                     std::vector<float>(100, 0.5F));
        MeetingDraftMetadata draft;
        draft.title = u"Dead"_s;
        draft.audioPath = data.recording(QString::fromUtf8(id) + u".wav"_s);
        draft.recordingStatus = QString::fromUtf8(recordingStatus);
        draft.startedAt = referenceSeconds(fixture.clock->now()) - 600;
        draft.chunksDirectory = chunks;
        draft.chunks = {chunks + u"/000000.wav"_s, chunks + u"/gone.wav"_s};
        data.makeDraft(QString::fromUtf8(id), draft);
        return chunks;
    }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
};

} // namespace

TEST_F(RecordingTest, ARecordingRunsFromItsDraftToItsMixedFile) {
    AppModel& model = fixture.start();
    model.diarizationDefaults().updateDefaultSpeakerCount(4);
    ProcessingSettings settings = model.detail().settings();
    settings.language = u"de"_s;
    settings.speakerCount = 7;
    settings.speakerIdentificationContext = u"of another meeting"_s;
    model.detail().setSettings(settings);
    model.startRecording(u" \n Weekly \t"_s);
    EXPECT_EQ(status(model), u"Recording");
    const QString id = current(model);
    const QString chunks = directoryOf(id) + u"/chunks"_s;
    MeetingDraftMetadata expected;
    expected.title = u"Weekly"_s;
    expected.audioPath = data.recording(id + u".wav"_s);
    settings.speakerCount = 4;
    settings.speakerIdentificationContext.clear();
    expected.settings = settings;
    expected.recordingStatus = u"recording"_s;
    expected.startedAt = referenceSeconds(fixture.clock->now());
    expected.chunksDirectory = chunks;
    EXPECT_EQ(draftOf(id), expected);
    EXPECT_EQ(model.recording().recordingState(), RecordingState::recording(chunks + u"/000000.wav"_s));
    EXPECT_EQ(model.selectedMeeting()->id, id);
    EXPECT_EQ(model.detail().selectedTitle(), u"Weekly");
    EXPECT_EQ(model.currentAudioURL(), expected.audioPath);
    EXPECT_TRUE(model.hasRecoverableRecording());

    model.startRecording(u"Second"_s);
    EXPECT_EQ(current(model), id) << "a second wish changes nothing";
    speak(1000);
    fixture.audioInputs->systemDevice->deliver(std::vector<float>(400, 0.25F));
    model.pauseRecording();
    EXPECT_EQ(status(model), u"Paused");
    EXPECT_EQ(draftOf(id).recordingStatus, u"paused");
    EXPECT_TRUE(fixture.audioInputs->systemDevice->deliver(std::vector<float>(400, 0.9F))) << "unheard";
    ASSERT_TRUE(ModelFixture::until([&] { return !draftOf(id).chunks.empty(); }));
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Recording");
    EXPECT_EQ(draftOf(id).recordingStatus, u"recording");
    EXPECT_EQ(model.recording().recordingState(), RecordingState::recording(chunks + u"/000001.wav"_s));
    speak(500);
    fixture.audioInputs->systemDevice->deliver(std::vector<float>(100, 0.25F));

    const auto file = ModelFixture::resultOf(model.stopRecording());
    EXPECT_EQ(file, expected.audioPath);
    const auto mix = readWav<float>(*file);
    ASSERT_EQ(mix.size(), 1500U);
    EXPECT_FLOAT_EQ(mix[0], 0.9F * 0.75F);
    EXPECT_FLOAT_EQ(mix[499], 0.9F * 0.75F);
    EXPECT_FLOAT_EQ(mix[500], 0.9F * 0.5F);
    EXPECT_EQ(model.recording().recordingState(), RecordingState::stopped(*file));
    EXPECT_FALSE(model.recording().currentRecordingMeetingID() || model.recording().finishingProgress());
    EXPECT_EQ(draftOf(id).recordingStatus, u"recorded");
    EXPECT_THAT(draftOf(id).chunks, ElementsAre(chunks + u"/000000.wav"_s, chunks + u"/000001.wav"_s));
    EXPECT_EQ(model.library().lastRecording(), file);
    EXPECT_EQ(status(model), u"corvane-worker not found") << "processing follows by itself";
    const CaptureReport report = readCaptureReport(directoryOf(id)).value();
    EXPECT_DOUBLE_EQ(report.tracks.at(captureTracks::microphone).recordedSeconds, 1500 / 48'000.0);
    EXPECT_DOUBLE_EQ(report.tracks.at(captureTracks::system).recordedSeconds, 500 / 48'000.0);
    EXPECT_THAT(model.recording().tracks(), IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(draftOf(id).chunks.size(), 2U) << "an entry that comes late adds nothing";
}

TEST_F(RecordingTest, AFailureToStartSaysSoAndLeavesNoSession) {
    AppModel& model = fixture.start();
    fixture.audioInputs->systemDevice->startError = u"no sound server"_s;
    model.startRecording(u"  "_s);
    EXPECT_EQ(status(model), u"Recording microphone only; system audio failed: no sound server");
    EXPECT_EQ(draftOf(current(model)).title,
              u"Meeting "_s + fixture.clock->now().toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s));
    speak(10);
    EXPECT_TRUE(stop(model));

    fixture.audioInputs->microphoneDevice->startError = u"no microphone"_s;
    model.startRecording(std::nullopt);
    EXPECT_EQ(status(model), u"Failed to start recording: no microphone");
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::stopped);
    EXPECT_FALSE(model.recording().currentRecordingMeetingID());
    EXPECT_EQ(model.library().meetings().size(), 1U);
    model.reloadMeetings();
    EXPECT_EQ(model.library().meetings().size(), 2U) << "the draft stays";

    ASSERT_TRUE(QDir(data.paths.meetings()).removeRecursively());
    writeFileAtomically(data.paths.meetings(), "in the way");
    fixture.audioInputs->microphoneDevice->calls.clear();
    model.startRecording(std::nullopt);
    EXPECT_TRUE(status(model).startsWith(u"Failed to start recording: "_s));
    EXPECT_TRUE(fixture.audioInputs->microphoneDevice->calls.isEmpty()) << "the draft comes first";
}

TEST_F(RecordingTest, AClosedChunkIsEnteredOnce) {
    AppModel& model = startMicrophoneOnly();
    const QString id = current(model);
    ChunkedMicrophoneRecorder& recorder = *model.recording().chunkedRecorder();
    speak(10);
    recorder.rotate();
    ASSERT_TRUE(ModelFixture::until([&] { return draftOf(id).chunks.size() == 1; }));
    int reloads = 0;
    QObject::connect(&model.library(), &LibraryPart::meetingsChanged, &model, [&] { ++reloads; });
    recorder.onChunkClosed({0, draftOf(id).chunks[0], {}, {}});
    QCoreApplication::processEvents();
    EXPECT_EQ(reloads, 0) << "nothing was written";
    EXPECT_EQ(draftOf(id).chunks.size(), 1U);
}

TEST_F(RecordingTest, PausingOrResumingThatFailsKeepsTheRecording) {
    AppModel& model = fixture.start();
    model.startRecording(std::nullopt);
    const QString id = current(model);
    model.recording().chunkedRecorder()->pause();
    model.pauseRecording();
    EXPECT_EQ(status(model), u"Failed to pause recording: notRecording");
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::recording);
    model.recording().chunkedRecorder()->resume();

    const QString record = directoryOf(id) + u"/metadata.json"_s;
    ASSERT_TRUE(QFile::remove(record));
    model.pauseRecording();
    EXPECT_EQ(status(model), u"Paused");
    EXPECT_EQ(draftOf(id).audioPath, data.recording(id + u".wav"_s)) << "built anew";
    EXPECT_EQ(draftOf(id).recordingStatus, u"paused");
    fixture.audioInputs->microphoneDevice->resumeError = u"gone"_s;
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Failed to resume recording: gone");
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::paused);
    fixture.audioInputs->microphoneDevice->resumeError.reset();
    fixture.audioInputs->systemDevice->formatError = u"no output"_s;
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Failed to resume recording: no output");
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::paused);
    EXPECT_FALSE(fixture.audioInputs->microphoneDevice->deliver(std::vector<float>(10))) << "nothing listens";
    fixture.audioInputs->systemDevice->formatError.reset();
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Recording");
    speak(10);
    EXPECT_TRUE(stop(model)) << status(model).toStdString();
    EXPECT_EQ(status(model), u"Recorded %1.wav"_s.arg(id));
}

TEST_F(RecordingTest, WhatADeadProcessLeftCanBeFinishedOrContinued) {
    const QString chunks = makeDeadRecording("DEAD", "paused");
    TrackHealth earlier;
    earlier.recordedSeconds = 60;
    earlier.gaps = 2;
    writeCaptureReport({.tracks = {{captureTracks::microphone, earlier}}}, directoryOf(u"DEAD"_s));
    AppModel& model = fixture.start();
    model.selectSidebarItem(SidebarItem::meeting(u"DEAD"_s));
    EXPECT_EQ(model.recording().recordingState(), RecordingState::idle());
    EXPECT_TRUE(model.hasRecoverableRecording());
    EXPECT_DOUBLE_EQ(model.recording().recordingElapsed(), 600);

    fixture.audioInputs->microphoneDevice->startError = u"busy"_s;
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Failed to resume recording: busy");
    fixture.audioInputs->microphoneDevice->startError.reset();
    model.resumeRecording();
    EXPECT_EQ(model.recording().recordingState(), RecordingState::recording(chunks + u"/000005.wav"_s))
        << "number 4 went to the attempt that failed";
    EXPECT_EQ(current(model), u"DEAD");
    EXPECT_TRUE(fixture.audioInputs->systemDevice->calls.isEmpty());
    speak(50);
    const auto file = stop(model);
    ASSERT_TRUE(file) << status(model).toStdString();
    EXPECT_EQ(readWav<float>(*file).size(), 250U) << "with the capital extension";
    const TrackHealth health = readCaptureReport(directoryOf(u"DEAD"_s))->tracks.at(captureTracks::microphone);
    EXPECT_DOUBLE_EQ(health.recordedSeconds, 60 + 50 / 48'000.0);
    EXPECT_EQ(health.gaps, 2);

    // One whose microphone is gone can be finished all the same.
    makeDeadRecording("OTHER");
    model.reloadMeetings();
    model.selectSidebarItem(SidebarItem::meeting(u"OTHER"_s));
    fixture.audioInputs->microphoneDevice->formatError = u"no microphone"_s;
    model.resumeRecording();
    const auto other = stop(model);
    ASSERT_TRUE(other) << status(model).toStdString();
    EXPECT_EQ(readWav<float>(*other).size(), 200U);
}

TEST_F(RecordingTest, ARenameHidesNoSoundFromTheStop) {
    const QString chunks = makeDeadRecording("RENAMED");
    AppModel& model = fixture.start();
    model.selectSidebarItem(SidebarItem::meeting(u"RENAMED"_s));
    model.renameSelectedRun(u"Named"_s);
    ASSERT_EQ(draftOf(u"RENAMED"_s).recordingStatus, u"imported");
    const auto file = stop(model);
    ASSERT_TRUE(file) << status(model).toStdString();
    EXPECT_EQ(readWav<float>(*file).size(), 200U);
    EXPECT_EQ(draftOf(u"RENAMED"_s).chunksDirectory, chunks);

    model.renameSelectedRun(u"Named again"_s);
    EXPECT_FALSE(stop(model)) << "a finished meeting is an imported one";
    EXPECT_EQ(status(model), u"Failed to stop recording: noChunks");
}

TEST_F(RecordingTest, ARecordingOfAnotherProcessIsLeftAlone) {
    makeDeadRecording("D");
    AppModel& model = fixture.start();
    model.selectSidebarItem(SidebarItem::meeting(u"D"_s));
    {
        const RecordingLock other(directoryOf(u"D"_s));
        const QString reason = u"this meeting is being recorded by another process"_s;
        model.resumeRecording();
        EXPECT_EQ(status(model), u"Failed to resume recording: "_s + reason);
        EXPECT_FALSE(stop(model));
        EXPECT_EQ(status(model), u"Failed to stop recording: "_s + reason);
    }
    fixture.audioInputs->microphoneDevice->startError = u"busy"_s;
    model.resumeRecording();
    EXPECT_FALSE(RecordingLock::isHeld(directoryOf(u"D"_s))) << "what failed is not kept from others";
}

TEST_F(RecordingTest, AnImportedMeetingIsNoRecording) {
    MeetingDraftMetadata imported;
    imported.recordingStatus = u"imported"_s;
    imported.audioPath = data.recording(u"I.wav"_s);
    data.makeDraft(u"I"_s, imported);
    AppModel& model = fixture.start();
    model.selectSidebarItem(SidebarItem::meeting(u"I"_s));
    model.pauseRecording();
    model.resumeRecording();
    EXPECT_EQ(status(model), u"Imported") << "no word about it";
    EXPECT_FALSE(stop(model));
    EXPECT_EQ(status(model), u"Failed to stop recording: noChunks");
    model.selectSidebarItem(SidebarItem::settings());
    EXPECT_FALSE(stop(model));
}

TEST_F(RecordingTest, AFailedStopCanBeTriedAgainWithoutTheRecorders) {
    AppModel& model = startMicrophoneOnly("Kept");
    const QString id = current(model);
    speak(100);
    model.renameSelectedRun(u"Renamed while it runs"_s);
    ASSERT_FALSE(draftOf(id).chunksDirectory) << "a rename replaces the draft";
    model.recording().chunkedRecorder()->rotate();
    speak(100);
    const QString garbage = directoryOf(id) + u"/chunks/000009.wav"_s;
    writeFileAtomically(garbage, "garbage");
    const auto refused = stop(model);
    EXPECT_FALSE(refused);
    EXPECT_TRUE(status(model).startsWith(u"Failed to stop recording: chunks/000009.wav: "_s));
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::recording) << "still shows";
    EXPECT_EQ(current(model), id);
    const QStringList calls = fixture.audioInputs->microphoneDevice->calls;
    ASSERT_TRUE(QFile::remove(garbage));
    const auto file = stop(model);
    ASSERT_TRUE(file) << status(model).toStdString();
    EXPECT_EQ(fixture.audioInputs->microphoneDevice->calls, calls);
    EXPECT_EQ(readWav<float>(*file).size(), 200U) << "the rename took no sound";
    EXPECT_EQ(draftOf(id).title, u"Renamed while it runs");
    EXPECT_EQ(draftOf(id).chunks.size(), 2U);
    writeFileAtomically(garbage, "garbage");
    EXPECT_FALSE(stop(model)) << "once more, from the same chunks";
    EXPECT_EQ(readWav<float>(*file).size(), 200U) << "what was finished stays";
    EXPECT_EQ(QDir(data.paths.recordings()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
              1);
    ASSERT_TRUE(QFile::remove(garbage));
    EXPECT_TRUE(stop(model));

    model.startRecording(std::nullopt);
    const QString next = current(model);
    ASSERT_TRUE(QFile::remove(directoryOf(next) + u"/metadata.json"_s));
    EXPECT_FALSE(stop(model));
    EXPECT_EQ(status(model), u"Failed to stop recording: notRecording");
    EXPECT_EQ(current(model), next);
}

TEST_F(RecordingTest, TheClockCountsPausesAndASilentMicrophoneIsReported) {
    AppModel& model = startMicrophoneOnly();
    fixture.clock->advance(3);
    ASSERT_TRUE(ModelFixture::until([&] { return model.recording().recordingElapsed() == 3; }));
    model.pauseRecording();
    fixture.clock->advance(4);
    ASSERT_TRUE(ModelFixture::until([&] { return model.recording().recordingElapsed() == 7; }));
    model.resumeRecording();
    speak(48'000 * 15 - 1, 0);
    ASSERT_TRUE(ModelFixture::until([&] {
        return !model.recording().tracks().empty() &&
               model.recording().tracks().at(captureTracks::microphone).silentSeconds > 14;
    }));
    EXPECT_EQ(status(model), u"Recording");
    speak(1, 0);
    EXPECT_TRUE(ModelFixture::until(
        [&] { return status(model) == u"No sound comes from the microphone. Check that it is not muted."; }));
    speak(1);
    EXPECT_TRUE(ModelFixture::until([&] { return status(model) == u"Recording"; }));
    fixture.waveFiles->room = 0;
    speak(1);
    EXPECT_TRUE(ModelFixture::until(
        [&] { return status(model).startsWith(u"Recording is losing the sound of the microphone: "_s); }));
}
