// The life of one recording. Nothing recorded is lost: the draft is on the disk before the first sample, every closed
// chunk is entered in it, and a recording can be finished or continued after the application has died.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Recording/MeetingChunks.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

namespace corvane {

namespace {

const QString chunksName = QStringLiteral("/chunks");
const QString systemChunksName = QStringLiteral("/system-chunks");

QString recordingTitle(const std::optional<QString>& suggested, const QDateTime& startedAt) {
    const QString title = suggested.value_or(QString()).trimmed();
    return !title.isEmpty()
               ? title
               : QStringLiteral("Meeting ") + startedAt.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace

void AppModel::startRecording(const std::optional<QString>& suggestedTitle) {
    if (m_recording.recordingState().isActive() || m_recording.finishingProgress())
        return; // a second wish while one runs must not take the recorders from it
    try {
        m_paths.createDirectories();
        resetSpeakerReviewState();
        m_detail.clearTranscript();
        m_jobs.clearJobState();
        m_jobs.clearRunProgress();
        ProcessingSettings settings = m_diarizationDefaults.appliedTo(m_detail.settings());
        settings.speakerIdentificationContext.clear();
        m_detail.setSettings(settings);

        const QString meetingID = uuidText(QUuid::createUuid());
        const QString directory = m_paths.meeting(meetingID);
        createPrivateDirectory(directory);
        lockRecording(meetingID);
        const QDateTime now = m_services.clock->now();
        MeetingDraftMetadata draft;
        draft.title = recordingTitle(suggestedTitle, now);
        draft.audioPath = m_paths.recordings() + QLatin1Char('/') + meetingID + QStringLiteral(".wav");
        draft.settings = settings;
        draft.recordingStatus = recordingStatus::recording;
        draft.startedAt = referenceSeconds(now);
        draft.chunksDirectory = directory + chunksName;
        writeMeetingDraft(draft, meetingID);

        m_recording.setEarlierReport({});
        auto microphone = makeMicrophoneRecorder(*draft.chunksDirectory, 0, meetingID);
        const QString chunk = microphone->start();
        m_recording.setChunkedRecorder(std::move(microphone));
        const auto warning = startSystemAudio(directory + systemChunksName);

        m_recording.setCurrentRecordingMeetingID(meetingID);
        m_recording.setRecordingStartedAt(now);
        m_recording.setRecordingState(RecordingState::recording(chunk));
        m_library.setLastRecording(draft.audioPath);
        m_library.setSelectedSidebarItem(SidebarItem::meeting(meetingID));
        m_detail.setLastRunDirectory(std::nullopt);
        m_detail.setSelectedTitle(draft.title);
        m_recording.updateElapsed();
        m_recording.startRecordingElapsedClock();
        reloadMeetings();
        say(warning.value_or(UserText::tr("Recording")));
    } catch (const Error& error) {
        letGoOfOtherRecordings();
        say(UserText::tr("Failed to start recording: %1").arg(error.text()));
    }
}

std::unique_ptr<ChunkedMicrophoneRecorder>
AppModel::makeMicrophoneRecorder(const QString& chunksDirectory, qint64 nextIndex, const QString& meetingID) {
    auto recorder = std::make_unique<ChunkedMicrophoneRecorder>(
        chunksDirectory, nextIndex, m_services.chunkDurationSeconds, m_services.audioInputs->microphone(),
        m_services.waveFiles, m_services.clock);
    recorder->onChunkClosed = [model = QPointer(this), meetingID](const AudioChunk& chunk) {
        // In a task of its own: entering a chunk must not hold up the recorder that closes it.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [model, chunk, meetingID] {
                if (model)
                    model->appendClosedChunk(chunk, meetingID);
            },
            Qt::QueuedConnection);
    };
    return recorder;
}

// Gives a warning if the recording has to go on without.
std::optional<QString> AppModel::startSystemAudio(const QString& systemChunksDirectory) {
    if (m_systemAudioCaptureMode == SystemAudioCaptureMode::off)
        return std::nullopt;
    try {
        auto recorder = std::make_unique<ChunkedSystemAudioRecorder>(
            systemChunksDirectory, 0, m_services.chunkDurationSeconds, m_services.audioInputs->systemAudio(),
            m_services.waveFiles, m_services.clock);
        recorder->start();
        m_recording.setSystemAudioRecorder(std::move(recorder));
        return std::nullopt;
    } catch (const Error& error) {
        m_recording.setSystemAudioRecorder(nullptr);
        return UserText::tr("Recording microphone only; system audio failed: %1").arg(error.text());
    }
}

void AppModel::appendClosedChunk(const AudioChunk& chunk, const QString& meetingID) {
    auto draft = readDraft(meetingID);
    if (m_recording.currentRecordingMeetingID() == meetingID)
        keepCaptureReport(meetingID); // so that little of it is lost with the process
    if (!draft || std::find(draft->chunks.begin(), draft->chunks.end(), chunk.url) != draft->chunks.end())
        return;
    draft->chunks.push_back(chunk.url);
    try {
        writeMeetingDraft(*draft, meetingID);
    } catch (const Error&) {
        // The chunk is found through its directory later.
    }
    reloadMeetings();
}

void AppModel::pauseRecording() {
    ChunkedMicrophoneRecorder* microphone = m_recording.chunkedRecorder();
    const auto meetingID = m_recording.currentRecordingMeetingID();
    if (!microphone || !meetingID || m_recording.finishingProgress())
        return;
    try {
        const QString chunk = microphone->pause();
        if (ChunkedSystemAudioRecorder* system = m_recording.systemAudioRecorder())
            system->pause();
        m_recording.setRecordingState(RecordingState::paused(chunk));
        MeetingDraftMetadata draft = draftOrFallback(*meetingID);
        draft.recordingStatus = recordingStatus::paused;
        writeMeetingDraft(draft, *meetingID);
        reloadMeetings();
        say(UserText::tr("Paused"));
    } catch (const Error& error) {
        say(UserText::tr("Failed to pause recording: %1").arg(error.text()));
    }
}

void AppModel::resumeRecording() {
    const auto meetingID = meetingToRecord();
    if (!meetingID || m_recording.finishingProgress())
        return;
    try {
        lockRecording(*meetingID);
        if (!m_recording.chunkedRecorder())
            prepareChunkedRecorderForExistingMeeting(*meetingID);
        ChunkedMicrophoneRecorder* microphone = m_recording.chunkedRecorder();
        if (!microphone) {
            letGoOfOtherRecordings();
            return;
        }
        const bool isPaused = m_recording.recordingState().kind == RecordingState::Kind::paused;
        const QString chunk = isPaused ? microphone->resume() : microphone->start();
        resumeSystemAudio(*microphone);
        m_recording.setCurrentRecordingMeetingID(meetingID);
        m_recording.setRecordingState(RecordingState::recording(chunk));
        MeetingDraftMetadata draft = draftOrFallback(*meetingID);
        draft.recordingStatus = recordingStatus::recording;
        writeMeetingDraft(draft, *meetingID);
        m_recording.setRecordingStartedAt(draft.startedAt ? std::optional(fromReferenceSeconds(*draft.startedAt))
                                                          : std::nullopt);
        m_recording.startRecordingElapsedClock();
        reloadMeetings();
        say(UserText::tr("Recording"));
    } catch (const Error& error) {
        // One that never started belongs to this meeting alone, and could only refuse to be stopped.
        ChunkedMicrophoneRecorder* microphone = m_recording.chunkedRecorder();
        if (microphone && microphone->state().kind == RecordingState::Kind::idle)
            m_recording.setChunkedRecorder(nullptr);
        letGoOfOtherRecordings();
        say(UserText::tr("Failed to resume recording: %1").arg(error.text()));
    }
}

// If it fails the microphone is held again: a recording that shows as paused must not listen, and must be able to go
// on.
void AppModel::resumeSystemAudio(ChunkedMicrophoneRecorder& microphone) {
    ChunkedSystemAudioRecorder* system = m_recording.systemAudioRecorder();
    if (!system)
        return;
    try {
        system->resume();
    } catch (const Error&) {
        microphone.pause();
        throw;
    }
}

// No system-audio recorder is made here: the system chunks of before stay and are still mixed at the end.
void AppModel::prepareChunkedRecorderForExistingMeeting(const QString& meetingID) {
    const auto draft = readDraft(meetingID);
    if (!draft || !draft->chunksDirectory)
        return;
    m_recording.setEarlierReport(readCaptureReport(m_paths.meeting(meetingID)).value_or(CaptureReport()));
    m_recording.setChunkedRecorder(makeMicrophoneRecorder(
        *draft->chunksDirectory, nextChunkIndex(chunkURLs(*draft, *m_services.files)), meetingID));
}

QFuture<std::optional<QString>> AppModel::stopRecording(AfterStop afterStop) {
    const auto refused = [] { return QtFuture::makeReadyFuture(std::optional<QString>()); };
    const auto meetingID = meetingToRecord();
    if (!meetingID || m_recording.finishingProgress())
        return refused();
    FinalizationPlan plan;
    try {
        lockRecording(*meetingID);
        stopRecorders(*meetingID);
        auto draft = readDraft(*meetingID);
        if (!draft)
            throw RecorderError();
        draft = withItsChunks(*draft,
                              m_recording.currentRecordingMeetingID()
                                  ? std::optional(m_paths.meeting(*meetingID) + chunksName)
                                  : forgottenChunksDirectory(*draft, m_paths.meeting(*meetingID), *m_services.files));
        plan = {.meetingID = *meetingID,
                .chunks = draft->chunks,
                .systemChunks = systemChunkURLs(*draft, *m_services.files),
                .output = draft->audioPath.isEmpty()
                              ? m_paths.recordings() + QLatin1Char('/') + *meetingID + QStringLiteral(".wav")
                              : draft->audioPath};
    } catch (const Error& error) {
        letGoOfOtherRecordings();
        say(UserText::tr("Failed to stop recording: %1").arg(error.text()));
        return refused();
    }
    return finalizeInBackground(plan, afterStop);
}

QFuture<std::optional<QString>> AppModel::finalizeInBackground(const FinalizationPlan& plan, AfterStop afterStop) {
    struct Outcome {
        QString file;
        QString error;
    };
    m_recording.setFinishingProgress(0.0);
    const auto report = [part = QPointer(&m_recording), told = 0.0](double fraction) mutable {
        // Each one wakes the main loop, and an hour of sound is thousands of blocks.
        if (fraction - told < 0.005 && fraction < 1.0)
            return;
        told = fraction;
        QMetaObject::invokeMethod(QCoreApplication::instance(), [part, fraction] {
            RecordingPart* recording = part.data();
            if (recording && recording->finishingProgress())
                recording->setFinishingProgress(fraction);
        });
    };
    return inBackground([files = m_services.waveFiles, plan, report]() -> Outcome {
               try {
                   return {finalizeChunks(*files, plan, report), {}};
               } catch (const Error& error) {
                   return {{}, error.text()};
               } catch (const std::exception& error) { // no memory or no thread to be had
                   return {{}, QString::fromLocal8Bit(error.what())};
               }
           })
        .then(this, [this, id = plan.meetingID, afterStop](const Outcome& outcome) {
            m_recording.setFinishingProgress(std::nullopt);
            return finishRecording(id, outcome.file, outcome.error, afterStop);
        });
}

void AppModel::lockRecording(const QString& meetingID) {
    const QString directory = m_paths.meeting(meetingID);
    if (!isPlainName(meetingID) || !QFileInfo(directory).isDir())
        return; // there is no recording in it, as the operation itself will find
    if (m_recordingLock && m_recordingLock->meetingDirectory() == directory)
        return;
    m_recordingLock.reset();
    m_recordingLock.emplace(directory);
}

// After a failure only the session that still shows keeps its meeting, with its recorder, for the next attempt.
void AppModel::letGoOfOtherRecordings() {
    if (m_recording.currentRecordingMeetingID())
        return;
    m_recordingLock.reset();
    m_recording.setChunkedRecorder(nullptr);
}

void AppModel::stopRecorders(const QString& meetingID) {
    if (ChunkedMicrophoneRecorder* microphone = m_recording.chunkedRecorder())
        microphone->stop();
    if (ChunkedSystemAudioRecorder* system = m_recording.systemAudioRecorder())
        system->stop();
    keepCaptureReport(meetingID);
    m_recording.setChunkedRecorder(nullptr);
    m_recording.setSystemAudioRecorder(nullptr);
}

// What was known of the same meeting before this process took it up is added to.
void AppModel::keepCaptureReport(const QString& meetingID) {
    const CaptureReport report = m_recording.report();
    if (report.tracks.empty() || !isPlainName(meetingID))
        return;
    const QString directory = m_paths.meeting(meetingID);
    try {
        writeCaptureReport(combined(m_recording.earlierReport(), report), directory);
    } catch (const FileError&) {
        // The recording is what counts; it is finished without its report.
    }
}

std::optional<QString> AppModel::finishRecording(const QString& meetingID, const QString& file,
                                                 const QString& finalizationError, AfterStop afterStop) {
    QString failure = finalizationError;
    if (failure.isEmpty()) {
        try {
            // Read anew: the title may have changed while the work ran.
            MeetingDraftMetadata draft =
                withItsChunks(draftOrFallback(meetingID), m_paths.meeting(meetingID) + chunksName);
            draft.audioPath = file;
            draft.recordingStatus = recordingStatus::recorded;
            writeMeetingDraft(draft, meetingID);
        } catch (const Error& error) {
            failure = error.text();
        }
    }
    if (!failure.isEmpty()) {
        letGoOfOtherRecordings();
        say(UserText::tr("Failed to stop recording: %1").arg(failure));
        return std::nullopt;
    }
    m_library.setLastRecording(file);
    m_recording.setRecordingState(RecordingState::stopped(file));
    m_recording.setCurrentRecordingMeetingID(std::nullopt);
    m_recordingLock.reset();
    m_recording.setRecordingStartedAt(std::nullopt);
    m_recording.stopRecordingElapsedClock();
    reloadMeetings();
    if (const auto meeting = m_library.find(meetingID))
        selectMeeting(*meeting);
    say(UserText::tr("Recorded %1").arg(lastPathComponent(file)));
    if (afterStop == AfterStop::process)
        processCurrentAudio();
    return file;
}

std::optional<QString> AppModel::meetingToRecord() const {
    if (m_recording.currentRecordingMeetingID())
        return m_recording.currentRecordingMeetingID();
    const auto meeting = selectedMeeting();
    return meeting ? std::optional(meeting->id) : std::nullopt;
}

// Renaming a meeting while it is recorded takes the directory out of its draft, not the sound out of it.
MeetingDraftMetadata AppModel::withItsChunks(MeetingDraftMetadata draft,
                                             const std::optional<QString>& ownChunksDirectory) const {
    if (!draft.chunksDirectory && ownChunksDirectory && QFileInfo(*ownChunksDirectory).isDir())
        draft.chunksDirectory = ownChunksDirectory;
    draft.chunks = chunkURLs(draft, *m_services.files);
    return draft;
}

MeetingDraftMetadata AppModel::draftOrFallback(const QString& meetingID) const {
    if (auto draft = readDraft(meetingID))
        return *draft;
    MeetingDraftMetadata draft;
    draft.title = m_detail.selectedTitle();
    draft.audioPath = m_library.lastRecording().value_or(QString());
    return draft;
}

} // namespace corvane
