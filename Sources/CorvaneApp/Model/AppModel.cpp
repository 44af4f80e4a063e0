#include "CorvaneApp/Model/AppModel.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Library/RunIdentity.h"

namespace corvane {

AppModel::AppModel(AppPaths paths, AppServices services, QObject* parent)
    : QObject(parent),
      m_paths(std::move(paths)),
      m_services(std::move(services)),
      m_library(m_paths, m_services.files),
      m_diarizationDefaults(m_services.defaults),
      m_detail(m_diarizationDefaults.appliedTo({})),
      m_recording(m_services.clock),
      m_playback(m_services.audioPlayers),
      m_jobs(m_services.files, m_services.audioFiles, m_services.clock),
      m_voiceProfiles(m_paths.database(), m_services.clock),
      m_notion(m_services.defaults),
      m_updates(m_services.defaults, m_services.info),
      m_localModel(m_services.defaults),
      m_setup(m_services.defaults) {
    connect(&m_recording, &RecordingPart::captureWarned, this, &AppModel::say);
    connect(&m_playback, &PlaybackPart::playbackFailed, this,
            [this](const QString& reason) { say(UserText::tr("Failed to play audio: %1").arg(reason)); });
    connect(&m_playback, &PlaybackPart::examplesFailed, this,
            [this](const QString& reason) { say(UserText::tr("Failed to play examples: %1").arg(reason)); });
    connect(&m_speakerReview, &SpeakerReviewPart::saveWanted, this, &AppModel::saveSpeakerMappings);
    connect(&m_profileRenameTimer, &QTimer::timeout, this, &AppModel::renameInNextRun);
    try {
        m_paths.createDirectories();
    } catch (const FileError&) {
        // The operations that need the directories say so when they are used.
    }
    m_library.restoreLatestRecording();
    if (m_services.surface == Surface::window) {
        static_cast<void>(refreshNotionSettings());
        static_cast<void>(refreshOllamaStatus());
    } else {
        m_notion.loadSettings();
    }
    reloadSpeakerProfiles();
    reloadMeetings();
    restoreLatestMeeting();
    restoreSidebarSelection();
    refreshSelectedNotionPageURL();
    connect(&m_library, &LibraryPart::selectedSidebarItemChanged, this, &AppModel::refreshSelectedNotionPageURL);
    startPolling();
    if (m_services.surface == Surface::window) {
        primeSystemAudioPermissionIfNeeded();
        startCallDetection();
        restoreCachedUpdateState();
        checkForUpdatesIfNeeded();
    }
}

AppModel::~AppModel() {
    *m_commandsCancelled = true;
    saveWhatIsDue();
    while (!m_profileRenames.empty())
        renameInNextRun();
}

std::optional<QString> AppModel::currentAudioURL() const {
    const auto meeting = selectedMeeting();
    if (meeting && meeting->isDraft())
        return meeting->audioURL;
    std::optional<QString> audio;
    if (m_detail.lastRunDirectory())
        audio = RunIdentity::ofDirectory(*m_detail.lastRunDirectory()).audioURL();
    else if (meeting)
        audio = meeting->audioURL;
    return audio ? audio : m_library.lastRecording();
}

bool AppModel::canProcess() const {
    return !isProcessing() && currentAudioURL();
}

bool AppModel::hasRecoverableRecording() const {
    const auto meeting = selectedMeeting();
    const auto draft = meeting ? readDraft(meeting->id) : std::nullopt;
    return draft &&
           (draft->recordingStatus == recordingStatus::recording || draft->recordingStatus == recordingStatus::paused);
}

void AppModel::restoreLatestMeeting() {
    if (!m_library.meetings().empty())
        selectMeeting(MeetingListItem(m_library.meetings().front()));
}

// Overrides what restoreLatestMeeting selected: of a newest meeting without a run the fields stay loaded, but its
// directory is no id of the list, so that no row shows as selected until the user picks one.
void AppModel::restoreSidebarSelection() {
    const auto& shown = m_detail.lastRunDirectory();
    m_library.setSelectedSidebarItem(shown ? SidebarItem::meeting(RunIdentity::ofDirectory(*shown).meetingID())
                                           : SidebarItem::settings());
}

void AppModel::resetSpeakerReviewState() {
    m_speakerReview.reset();
}

// A system that asks the user before it lets sound be captured asks now, and not in the first seconds of a meeting.
void AppModel::primeSystemAudioPermissionIfNeeded() {
    if (m_systemAudioCaptureMode == SystemAudioCaptureMode::off)
        return;
    static_cast<void>(inBackground([inputs = m_services.audioInputs] {
        try {
            ChunkedSystemAudioRecorder::primePermission(*inputs);
        } catch (const Error&) {
            // The recording says what is missing.
        }
    }));
}

void AppModel::startCallDetection() {
    m_callDetectionController = std::make_unique<CallDetectionController>(
        CallDetectionController::Services{.frontmostApplication = m_services.frontmostApplication,
                                          .notices = m_services.callNotices,
                                          .clock = m_services.clock},
        // While a recording that was left behind is finished the state shows none, and yet no other can begin.
        [this] { return !m_recording.recordingState().isActive() && !m_recording.finishingProgress(); });
    connect(m_callDetectionController.get(), &CallDetectionController::recordWanted, this, &AppModel::startRecording);
    m_callDetectionController->start();
}

// A meeting's id can come out of a document. One that is no plain name belongs to no directory of ours.
std::optional<MeetingDraftMetadata> AppModel::readDraft(const QString& meetingID) const {
    return isPlainName(meetingID) ? readMeetingDraft(m_paths.meeting(meetingID)) : std::nullopt;
}

void AppModel::writeMeetingDraft(const MeetingDraftMetadata& draft, const QString& meetingID) const {
    if (!isPlainName(meetingID))
        throw FileError(UserText::tr("“%1” is not the name of a meeting").arg(meetingID));
    corvane::writeMeetingDraft(draft, m_paths.meeting(meetingID));
}

} // namespace corvane
