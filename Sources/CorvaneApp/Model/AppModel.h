// The one controller. It is made of parts, one per subject, which hold all state that any surface shows; what spans
// parts is an operation here, in a source file named after its subject. Operations raise nothing: each writes its
// outcome to the status line. One instance, confined to the main thread.
#pragma once

#include "CorvaneApp/Model/AppServices.h"
#include "CorvaneApp/Model/CallDetectionController.h"
#include "CorvaneApp/Model/DiarizationDefaultsPart.h"
#include "CorvaneApp/Model/JobsPart.h"
#include "CorvaneApp/Model/LibraryPart.h"
#include "CorvaneApp/Model/LocalModelPart.h"
#include "CorvaneApp/Model/MeetingDetailPart.h"
#include "CorvaneApp/Model/NotionPart.h"
#include "CorvaneApp/Model/PlaybackPart.h"
#include "CorvaneApp/Model/RecordingPart.h"
#include "CorvaneApp/Model/SetupPart.h"
#include "CorvaneApp/Model/SpeakerReviewPart.h"
#include "CorvaneApp/Model/StatusPart.h"
#include "CorvaneApp/Model/UpdatesPart.h"
#include "CorvaneApp/Model/VoiceProfilesPart.h"
#include "CorvaneCore/Library/AppPaths.h"
#include "CorvaneCore/Recording/Finalization.h"
#include "CorvaneCore/Recording/RecordingLock.h"
#include "CorvaneCore/Recording/SystemAudioCapture.h"
#include "CorvaneCore/Services/DependencySetupModel.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QTimer>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>

namespace corvane {

class NotionClient;
class RunIdentity;
struct NotionDatabaseInfo;
struct VoiceExtraction;

class AppModel final : public QObject {
    Q_OBJECT

public:
    // Starts up: makes the directories, finds the newest recording, lists the meetings, selects the newest, begins to
    // poll, and for a window to look for calls. Nothing in it fails visibly.
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
    [[nodiscard]] VoiceProfilesPart& voiceProfiles() { return m_voiceProfiles; }
    [[nodiscard]] NotionPart& notion() { return m_notion; }
    [[nodiscard]] UpdatesPart& updates() { return m_updates; }
    [[nodiscard]] LocalModelPart& localModel() { return m_localModel; }
    [[nodiscard]] SetupPart& setup() { return m_setup; }
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
    void openMeetingFolder(const MeetingListItem& meeting);
    void openLocalData();
    // Writes the observable settings into the record of the meeting that is shown. Failures are ignored.
    void persistCurrentMeetingSettings();

    // Import (AppModelImport.cpp)
    // Copies a file beside the main loop and makes a meeting of it; the future holds the meeting's id, or nothing if
    // it failed. Does not start processing.
    QFuture<std::optional<QString>> importAudioFile(const QString& chosen);
    // Ends the copying of every import that is under way, soon and without a trace; their futures then hold nothing.
    void cancelImports();

    // Speakers of the shown run (AppModelSpeakers.cpp, AppModelVoices.cpp). Each takes a speaker's label. What returns
    // a value says whether all of it was done; the card's line and the status line tell the rest.
    // Takes a name while it is typed, and saves half a second after the last change.
    void updateSpeakerName(const QString& speaker, const QString& name);
    // Writes the names, links and suggestions on screen into the shown run.
    bool saveSpeakerMappings();
    bool assignSpeaker(const QString& speaker, const SpeakerProfile& profile);
    // Links the speaker to a person and adds the voice to what is known of that person. The link stands also if the
    // voice then cannot be had.
    QFuture<bool> addVoiceObservation(const QString& speaker, const SpeakerProfile& profile);
    QFuture<bool> createProfileFromSpeakerVoice(const QString& speaker, const QString& displayName);
    bool removeSpeakerProfileAssignment(const QString& speaker);
    // Does nothing if the suggested person is no longer known.
    QFuture<bool> acceptSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion);
    // Compares the voices of the shown run now where that has not been done. False, with the reason in the status line,
    // if it was not begun; isMatchingSpeakerProfiles tells when it is through.
    bool matchShownSpeakers();
    void rejectSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion);

    // Known people (AppModelProfiles.cpp). False or nothing if nothing was changed, with the reason in the status line.
    void reloadSpeakerProfiles();
    std::optional<SpeakerProfile> createSpeakerProfile(const QString& displayName, const QString& notes);
    // A new name goes into every meeting that the person is linked in, one after the other beside the main loop's other
    // work; the future ends when all have it. One that cannot be changed does not stop the others, is told in the
    // status line, and makes the future's result false.
    QFuture<bool> updateSpeakerProfile(const SpeakerProfile& profile, const QString& displayName, const QString& notes,
                                       bool enabled);
    bool setSpeakerProfileEnabled(const SpeakerProfile& profile, bool enabled);
    // The names and links in the meetings stay.
    bool deleteSpeakerProfile(const SpeakerProfile& profile);
    bool deleteAllSpeakerProfiles();
    bool updateVoiceProfileMatchingEnabled(bool enabled);
    bool updateVoiceProfileMatchingThreshold(double threshold); // clamped to 0 to 1

    // Notion (AppModelNotion.cpp). The futures say whether it was done; the status line tells why not.
    // Whether a token is stored; false also where the token store cannot say.
    QFuture<bool> refreshNotionSettings();
    QFuture<bool> saveNotionToken(const QString& token);
    QFuture<bool> deleteNotionToken();
    void updateNotionDatabaseURL(const QString& url);
    // Reads the database's title and columns, and chooses columns where the user has not.
    QFuture<bool> fetchNotionDatabaseTitle();
    // What to do about pages that the meeting has already: with `ask` nothing is published, and
    // pendingNotionReplacementPages holds them.
    enum class WhenPageExists { ask, replace, createNew };
    // Publishes the shown meeting as a page, as it is on screen now.
    QFuture<bool> syncSelectedMeetingToNotion(WhenPageExists whenPageExists);
    // False if there is no page, or nothing to open it with.
    bool openSelectedNotionPage();

    // Updates (AppModelUpdates.cpp)
    // Asks the update server now. The future says whether it could tell; updateCheckErrorMessage tells why not. An
    // update that was known before stays shown.
    QFuture<bool> checkForUpdates();
    // The same once a day, unless switched off. For moments at which a user may want to know; a command never does.
    void checkForUpdatesIfNeeded();
    void updateAutomaticUpdateChecksEnabled(bool enabled);
    // What the last check found, held against the version that runs now, without asking anybody.
    void restoreCachedUpdateState();
    enum class KeepManifest { yes, no };
    void applyUpdateAvailability(const UpdateAvailability& availability, KeepManifest persist);
    void persistUpdateManifest(const UpdateManifest& manifest);

    // Local language model (AppModelLocalModel.cpp)
    // Looks for Ollama beside the main loop. Finding it switches its use on, also against an earlier wish of the user.
    QFuture<OllamaStatus> refreshOllamaStatus();

    // Setup (AppModelSetup.cpp)
    // Whether a Hugging Face token is stored; nothing where the token store cannot say.
    [[nodiscard]] QFuture<std::optional<bool>> hasHuggingFaceToken() const;
    // The futures say whether it was done.
    [[nodiscard]] QFuture<bool> saveHuggingFaceToken(const QString& token) const;
    [[nodiscard]] QFuture<bool> deleteHuggingFaceToken() const;
    // In the user's browser. False for what is no http or https address, and where nothing could be started.
    bool openWebPage(const QUrl& address);
    [[nodiscard]] std::unique_ptr<DependencySetupModel> makeDependencySetup() const;
    // Whether meetings are processed by the worker that comes along, which needs no further tools.
    [[nodiscard]] bool usesOwnWorker() const;

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
    // Plays a speaker's first examples, or ends that. The same control does both.
    void toggleSpeakerExamplesPlayback(const TranscriptSpeaker& speaker);
    void stopAudioPlayback();

    // Processing (AppModelProcessing.cpp)
    // Launches the worker on the current audio. The future holds the run directory, or nothing if it was not launched.
    QFuture<std::optional<QString>> processCurrentAudio();
    // One tick of the poll, each second: reloads the list and follows the shown run while it runs.
    void pollTick();

private:
    struct LaunchWish;
    struct MatchingTask;
    struct NotionSync;
    struct VoiceUpdate;
    // A person's new name on its way through the stored runs.
    struct ProfileRename {
        QUuid profileID;
        QString displayName;
        std::vector<QString> runs; // still to be looked at, the next one last
        bool hasFailed = false;    // in one of them
        QPromise<bool> done;
    };

    void restoreLatestMeeting();
    void restoreSidebarSelection();
    void startPolling();
    void primeSystemAudioPermissionIfNeeded();
    void startCallDetection();
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
    void writeSpeakerReview(const QString& runDirectory);
    void saveWhatIsDue();
    void persistSpeakerProfileMatches();
    bool updateSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion, const QString& status);
    [[nodiscard]] std::optional<QString> findWorker() const;
    [[nodiscard]] bool shouldApplyVoiceProfileUpdate(const QString& runID,
                                                     const std::optional<QString>& expectedRunID) const;
    [[nodiscard]] QFuture<CommandResult> runSpeakerProfileExtraction(const VoiceExtraction& extraction) const;
    void tellCard(const QString& speaker, VoiceProfileUpdateMessage::Kind kind, const QString& text);
    [[nodiscard]] bool hasVoiceOf(const QString& speaker, const SpeakerProfile& profile, const QString& runID);
    bool finishVoiceObservation(const VoiceUpdate& update, const CommandResult& result);
    void storeVoice(const VoiceUpdate& update, const CommandResult& result);
    bool startSpeakerProfileMatchingIfNeeded(const TranscriptResult& result,
                                             const std::optional<QString>& runDirectory);
    void matchNextSpeaker(const std::shared_ptr<MatchingTask>& task);
    void finishMatching(const MatchingTask& task);
    // Changes the store, reads it anew and tells what came of it; `failure` has %1 where the reason goes.
    bool changeProfiles(const QString& failure, const QString& success, const std::function<void(LocalStore&)>& change);
    QFuture<bool> propagateSpeakerProfileDisplayName(const QUuid& profileID, const QString& displayName);
    void renameInNextRun();
    QFuture<bool> changeNotionToken(const QString& failure, const std::function<void(SecretStoring&)>& change);
    [[nodiscard]] NotionClient notionClient(const QString& token);
    QFuture<bool> fetchNotionDatabase(const QString& token);
    void takeNotionDatabase(const NotionDatabaseInfo& database);
    bool finishUpdateCheck(const Outcome<UpdateAvailability>& outcome, const UpdateCheckState& previous);
    [[nodiscard]] QFuture<OllamaStatus> detectOllama();
    void refreshSelectedNotionPageURL();
    // The steps of a sync, in this order.
    void beginNotionSync(const std::shared_ptr<NotionSync>& sync, const Outcome<QString>& token);
    void findNotionPages(const std::shared_ptr<NotionSync>& sync, const NotionDatabaseInfo& database);
    void decideOnNotionPages(const std::shared_ptr<NotionSync>& sync);
    void archiveNextNotionPage(const std::shared_ptr<NotionSync>& sync);
    void createNotionPage(const std::shared_ptr<NotionSync>& sync);
    void inNotionSync(const std::shared_ptr<NotionSync>& sync, const std::function<void()>& step);
    void refuseNotionSync(const QString& reason);
    static void endNotionSync(const std::shared_ptr<NotionSync>& sync, bool done);
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
    VoiceProfilesPart m_voiceProfiles;
    NotionPart m_notion;
    UpdatesPart m_updates;
    LocalModelPart m_localModel;
    SetupPart m_setup;
    // Runs that were compared with the known voices since the start, whatever came of it: once is enough.
    std::set<QString> m_matchedRunIDs;
    std::deque<ProfileRename> m_profileRenames;
    QTimer m_profileRenameTimer;
    std::optional<RecordingLock> m_recordingLock;
    QTimer m_pollTimer;
    SystemAudioCaptureMode m_systemAudioCaptureMode = SystemAudioCaptureSettings::defaultMode;
    // Shared with the threads that wait for the worker.
    std::shared_ptr<std::atomic<bool>> m_commandsCancelled = std::make_shared<std::atomic<bool>>(false);
    // Shared with the copying threads; cancelling sets it and puts a new one in its place.
    std::shared_ptr<std::atomic<bool>> m_importsCancelled = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<CallDetectionController> m_callDetectionController; // none for a command
};

} // namespace corvane
