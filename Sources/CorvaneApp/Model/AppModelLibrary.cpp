// The operations on the list of meetings: selecting, refreshing, renaming and deleting.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Library/RunIdentity.h"
#include "CorvaneCore/Library/StatusText.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace corvane {

namespace {

std::filesystem::path nativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

// Removes a file or a directory with all that is in it. Of a link only the link goes. Gives the system's words on
// failure and nothing on success, also where there was nothing.
std::optional<QString> removeAll(const QString& path) {
    std::error_code error;
    std::filesystem::remove_all(nativePath(path), error);
    return error ? std::optional(QString::fromStdString(error.message())) : std::nullopt;
}

// Removes an audio file only if it lies in `recordings`, whatever its path looks like: full stops and links on the way
// are followed, as the system would follow them. Its path comes out of a document, so anything may stand there.
void removeAudioIn(const QString& recordings, const QString& audio) {
    const QFileInfo file(audio);
    const QString folder = QFileInfo(file.path()).canonicalFilePath();
    const QString home = QFileInfo(recordings).canonicalFilePath();
    if (audio.contains(QChar(0)) || folder.isEmpty() || home.isEmpty() || !isPlainName(file.fileName()))
        return;
    if (folder == home || folder.startsWith(home + QLatin1Char('/')))
        removeAll(folder + QLatin1Char('/') + file.fileName());
}

} // namespace

void AppModel::reloadMeetings() {
    m_library.reloadMeetings();
}

void AppModel::selectSidebarItem(const std::optional<SidebarItem>& item) {
    m_library.setSelectedSidebarItem(item);
    if (item && item->kind == SidebarItem::Kind::speakerProfiles)
        reloadSpeakerProfiles();
    if (item && item->kind == SidebarItem::Kind::settings)
        checkForUpdatesIfNeeded();
    if (!item || item->kind != SidebarItem::Kind::meeting)
        return;
    if (const auto meeting = m_library.find(item->meetingID))
        selectMeeting(*meeting);
}

void AppModel::selectMeeting(const MeetingListItem& meeting) {
    // First, as who hears of it may still have something to write to the meeting that was shown.
    m_library.setSelectedSidebarItem(SidebarItem::meeting(meeting.id));
    m_detail.setLastRunDirectory(meeting.latestRun);
    resetSpeakerReviewState();
    if (meeting.isDraft())
        showDraft(meeting);
    else
        refreshRun();
}

void AppModel::showDraft(const MeetingListItem& meeting) {
    m_jobs.clearJobState();
    m_detail.clearTranscript();
    const auto draft = readDraft(meeting.id);
    ProcessingSettings settings = m_diarizationDefaults.appliedTo({});
    if (draft)
        settings = draft->settings;
    m_detail.setSettings(settings);
    m_detail.setSelectedTitle(meeting.title);
    m_recording.setRecordingStartedAt(draft && draft->startedAt ? std::optional(fromReferenceSeconds(*draft->startedAt))
                                                                : std::nullopt);
    m_recording.updateElapsed();
    const bool inProgress = draft && (draft->recordingStatus == recordingStatus::recording ||
                                      draft->recordingStatus == recordingStatus::paused);
    say(inProgress ? UserText::tr("Meeting in progress") : UserText::tr("Imported"));
}

void AppModel::refreshRun() {
    if (!m_detail.lastRunDirectory())
        return;
    const QString run = *m_detail.lastRunDirectory();
    const TranscriptResultReader reader;
    m_jobs.readJobState(run);
    m_detail.setTranscript(reader.read(run), reader.transcriptText(run));

    const auto record = readRunAppMetadata(run);
    const auto& result = m_detail.transcriptResult();
    RunIdentity identity(
        run, record, [&] { return result ? std::optional(transcriptIdentity(*result)) : std::nullopt; },
        [&] { return audioURLFromEvents(run); });
    if (!m_detail.isEditingSelectedTitle())
        m_detail.setSelectedTitle(identity.title());
    m_detail.setSettings(record.value_or(RunAppMetadata()).settings);
    m_jobs.updateRunProgress(run, identity.audioURL());
    if (result) {
        // A name that is still being typed is newer than the file, and its save brings the next refresh.
        if (!m_speakerReview.isSaveDue())
            m_speakerReview.load(*result);
        if (m_services.surface == Surface::window)
            startSpeakerProfileMatchingIfNeeded(TranscriptResult(*result), run);
    }
    if (m_jobs.jobState())
        say(statusSentence(m_jobs.jobState()->status));
    reloadMeetings();
}

bool AppModel::renameSelectedRun(const QString& text) {
    const QString title = text.trimmed();
    m_detail.setSelectedTitle(title);
    const auto meeting = selectedMeeting();
    if (!(meeting && meeting->isDraft()) && !m_detail.lastRunDirectory())
        return false;
    try {
        if (meeting && meeting->isDraft())
            renameDraft(*meeting, title);
        else
            renameRuns(title);
    } catch (const Error& error) {
        say(UserText::tr("Failed to rename: %1").arg(error.text()));
        return false;
    }
    reloadMeetings();
    say(UserText::tr("Renamed"));
    return true;
}

// A plain replacement: a recording that is under way or waits for recovery becomes an imported meeting on the disk.
void AppModel::renameDraft(const MeetingListItem& meeting, const QString& title) {
    MeetingDraftMetadata draft;
    draft.title = title;
    draft.audioPath = meeting.audioURL.value_or(QString());
    draft.settings = m_detail.settings().withOrderedBounds();
    draft.recordingStatus = recordingStatus::imported;
    writeMeetingDraft(draft, meeting.id);
}

// All runs of a meeting keep one title. Only the shown one's failure counts.
void AppModel::renameRuns(const QString& title) {
    const auto rename = [&title](const QString& run) {
        RunAppMetadata record = readRunAppMetadata(run).value_or(RunAppMetadata());
        record.title = title;
        writeRunAppMetadata(record, run);
    };
    const QString shown = *m_detail.lastRunDirectory();
    rename(shown);
    const auto meeting = selectedMeeting();
    for (const QString& run : meeting ? meeting->runURLs : std::vector<QString>()) {
        if (run == shown)
            continue;
        try {
            rename(run);
        } catch (const Error&) {
            // The newest run speaks for the meeting; an older one that cannot be written keeps its title.
        }
    }
}

bool AppModel::deleteMeeting(const MeetingListItem& meeting, bool deleteAudio) {
    for (const QString& run : meeting.runURLs) {
        if (const auto reason = removeAll(run)) {
            say(UserText::tr("Failed to delete: %1: %2").arg(lastPathComponent(run), *reason));
            return false;
        }
    }
    if (isPlainName(meeting.id))
        removeAll(m_paths.meeting(meeting.id));
    if (deleteAudio && meeting.audioURL)
        removeAudioIn(m_paths.recordings(), *meeting.audioURL);

    const auto& shown = m_detail.lastRunDirectory();
    if (shown && std::find(meeting.runURLs.begin(), meeting.runURLs.end(), *shown) != meeting.runURLs.end()) {
        m_detail.setLastRunDirectory(std::nullopt);
        m_jobs.clearJobState();
        m_detail.clearTranscript();
        m_detail.setSelectedTitle({});
        m_jobs.clearRunProgress();
        m_library.restoreLatestRecording();
    }
    reloadMeetings();
    const auto& meetings = m_library.meetings();
    if (meetings.empty())
        m_library.setSelectedSidebarItem(std::nullopt);
    else
        selectMeeting(MeetingListItem(meetings.front()));
    say(UserText::tr("Deleted"));
    return true;
}

void AppModel::openLastRun() {
    m_services.workspace->open(m_detail.lastRunDirectory().value_or(m_paths.root));
}

void AppModel::openMeetingFolder(const MeetingListItem& meeting) {
    m_services.workspace->open(meeting.latestRun);
}

void AppModel::openLocalData() {
    m_services.workspace->open(m_paths.root);
}

void AppModel::persistCurrentMeetingSettings() {
    try {
        const auto meeting = selectedMeeting();
        if (meeting && meeting->isDraft()) {
            MeetingDraftMetadata draft = readDraft(meeting->id).value_or(MeetingDraftMetadata());
            draft.title = m_detail.selectedTitle();
            draft.audioPath = meeting->audioURL.value_or(QString());
            draft.settings = m_detail.settings().withOrderedBounds();
            writeMeetingDraft(draft, meeting->id);
        } else if (m_detail.lastRunDirectory()) {
            const QString& run = *m_detail.lastRunDirectory();
            RunAppMetadata record = readRunAppMetadata(run).value_or(RunAppMetadata());
            record.settings = m_detail.settings();
            writeRunAppMetadata(record, run);
        }
    } catch (const Error&) {
        // The settings stay on screen and are written again with the next change or at the next processing.
    }
}

} // namespace corvane
