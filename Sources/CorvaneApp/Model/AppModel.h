// The one controller. It is made of parts, one per subject, which hold all state that any surface shows; what spans
// parts is an operation here, in a source file named after its subject. Operations raise nothing: each writes its
// outcome to the status line. One instance, confined to the main thread.
#pragma once

#include "CorvaneApp/Model/AppServices.h"
#include "CorvaneApp/Model/DiarizationDefaultsPart.h"
#include "CorvaneApp/Model/JobsPart.h"
#include "CorvaneApp/Model/LibraryPart.h"
#include "CorvaneApp/Model/MeetingDetailPart.h"
#include "CorvaneApp/Model/PlaybackPart.h"
#include "CorvaneApp/Model/RecordingPart.h"
#include "CorvaneApp/Model/SpeakerReviewPart.h"
#include "CorvaneApp/Model/StatusPart.h"
#include "CorvaneCore/Library/AppPaths.h"
#include "CorvaneCore/Recording/Finalization.h"
#include "CorvaneCore/Recording/RecordingLock.h"
#include "CorvaneCore/Recording/SystemAudioCapture.h"

#include <QFuture>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>

namespace corvane {

class RunIdentity;

class AppModel final : public QObject {
    Q_OBJECT

public:
    // Starts up: makes the directories, finds the newest recording, lists the meetings, selects the newest, and begins
    // to poll. Nothing in it fails visibly.
    AppModel(AppPaths paths, AppServices services, QObject* parent = nullptr);
    ~AppModel() override;

    [[nodiscard]] StatusPart& status() { return m_status; }
    [[nodiscard]] LibraryPart& library() { return m_library; }
    [[nodiscard]] MeetingDetailPart& detail() { return m_detail; }
    [[nodiscard]] DiarizationDefaultsPart& diarizationDefaults() { return m_diarizationDefaults; }
    [[nodiscard]] RecordingPart& recording() { return m_recording; }
    [[nodiscard]] PlaybackPart& playback() { return m_playback; }
    [[nodiscard]] JobsPart& jobs() { return m_jobs; }
    [[nodiscard]] SpeakerReviewPart& speakerReview() { return m_speakerReview; }
    [[nodiscard]] const AppPaths& paths() const { return m_paths; }

    // Derived from the parts and the disk.
    [[nodiscard]] std::optional<MeetingListItem> selectedMeeting() const { return m_library.selectedMeeting(); }
    [[nodiscard]] std::optional<QString> currentAudioURL() const;
    [[nodiscard]] bool canProcess() const;
    [[nodiscard]] bool hasRecoverableRecording() const;
    [[nodiscard]] bool isProcessing() const { return m_jobs.isProcessing(); }

    // Library (AppModelLibrary.cpp)
    void reloadMeetings();
    void selectSidebarItem(const std::optional<SidebarItem>& item);
    void selectMeeting(const MeetingListItem& meeting);
    void refreshRun();
    // False if nothing was renamed, or deleted as a whole.
    bool renameSelectedRun(const QString& text);
    bool deleteMeeting(const MeetingListItem& meeting, bool deleteAudio);
    void openLastRun();
    // Writes the observable settings into the record of the meeting that is shown. Failures are ignored.
    void persistCurrentMeetingSettings();

    // Import and speaker names (AppModelImport.cpp, AppModelSpeakers.cpp)
    // Copies a file beside the main loop and makes a meeting of it; the future holds the meeting's id, or nothing if
    // it failed. Does not start processing.
    QFuture<std::optional<QString>> importAudioFile(const QString& chosen);
    // Ends the copying of every import that is under way, soon and without a trace; their futures then hold nothing.
    void cancelImports();
    // Writes the names, links and suggestions on screen into the shown run. False if that failed.
    bool saveSpeakerMappings();

    // Recording (AppModelRecording.cpp)
    void startRecording(const std::optional<QString>& suggestedTitle);
    void pauseRecording();
    // Goes on with a paused recording, or with one that an earlier process left behind.
    void resumeRecording();
    enum class AfterStop { process, leave };
    // Ends a recording, the current one or the selected one that was left behind: joins and mixes its chunks beside the
    // main loop, then processes the result. The future holds the finished file, or nothing if that failed; then the
    // session still shows, every chunk stays, and stopping can be tried again.
    QFuture<std::optional<QString>> stopRecording(AfterStop afterStop = AfterStop::process);
    // Whether a recording also captures what the computer plays.
    [[nodiscard]] SystemAudioCaptureMode systemAudioCaptureMode() const { return m_systemAudioCaptureMode; }
    void setSystemAudioCaptureMode(SystemAudioCaptureMode mode) { m_systemAudioCaptureMode = mode; }

    // Playback (AppModelPlayback.cpp)
    void toggleAudioPlayback();
    void playAudio(double fromSeconds);
    void stopAudioPlayback();

    // Processing (AppModelProcessing.cpp)
    // Launches the worker on the current audio. The future holds the run directory, or nothing if it was not launched.
    QFuture<std::optional<QString>> processCurrentAudio();
    // One tick of the poll, each second: reloads the list and follows the shown run while it runs.
    void pollTick();

private:
    struct LaunchWish;

    void restoreLatestMeeting();
    void restoreSidebarSelection();
    void startPolling();
    void resetSpeakerReviewState();
    void showDraft(const MeetingListItem& meeting);
    void renameDraft(const MeetingListItem& meeting, const QString& title);
    void renameRuns(const QString& title);
    std::optional<QString> finishImport(const QString& source, const QString& copy, const QString& error);
    std::optional<QString> launch(const LaunchWish& wish, const ProcessEnvironment& environment);
    [[nodiscard]] std::unique_ptr<ChunkedMicrophoneRecorder>
    makeMicrophoneRecorder(const QString& chunksDirectory, qint64 nextIndex, const QString& meetingID);
    [[nodiscard]] std::optional<QString> startSystemAudio(const QString& systemChunksDirectory);
    void resumeSystemAudio(ChunkedMicrophoneRecorder& microphone);
    void prepareChunkedRecorderForExistingMeeting(const QString& meetingID);
    void appendClosedChunk(const AudioChunk& chunk, const QString& meetingID);
    [[nodiscard]] MeetingDraftMetadata draftOrFallback(const QString& meetingID) const;
    [[nodiscard]] MeetingDraftMetadata withItsChunks(MeetingDraftMetadata draft,
                                                     const std::optional<QString>& ownChunksDirectory) const;
    [[nodiscard]] std::optional<QString> meetingToRecord() const;
    void lockRecording(const QString& meetingID);
    void letGoOfOtherRecordings();
    void stopRecorders(const QString& meetingID);
    void keepCaptureReport(const QString& meetingID);
    // The joining and mixing run on a thread of their own; what follows from them runs on the main thread.
    QFuture<std::optional<QString>> finalizeInBackground(const FinalizationPlan& plan, AfterStop afterStop);
    std::optional<QString> finishRecording(const QString& meetingID, const QString& file, const QString& error,
                                           AfterStop afterStop);
    [[nodiscard]] std::optional<MeetingDraftMetadata> readDraft(const QString& meetingID) const;
    void writeMeetingDraft(const MeetingDraftMetadata& draft, const QString& meetingID) const;
    void say(const QString& message) { m_status.setStatusMessage(message); }

    AppPaths m_paths;
    AppServices m_services;

    StatusPart m_status;
    LibraryPart m_library;
    DiarizationDefaultsPart m_diarizationDefaults;
    MeetingDetailPart m_detail;
    RecordingPart m_recording;
    PlaybackPart m_playback;
    JobsPart m_jobs;
    SpeakerReviewPart m_speakerReview;
    std::optional<RecordingLock> m_recordingLock;
    QTimer m_pollTimer;
    SystemAudioCaptureMode m_systemAudioCaptureMode = SystemAudioCaptureSettings::defaultMode;
    // Shared with the copying threads; cancelling sets it and puts a new one in its place.
    std::shared_ptr<std::atomic<bool>> m_importsCancelled = std::make_shared<std::atomic<bool>>(false);
};

} // namespace corvane
