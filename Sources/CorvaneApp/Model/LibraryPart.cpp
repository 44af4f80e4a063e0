#include "CorvaneApp/Model/LibraryPart.h"

#include <algorithm>
#include <utility>

namespace corvane {

LibraryPart::LibraryPart(const AppPaths& paths, std::shared_ptr<const FileTree> files, QObject* parent)
    : ModelPart(parent), m_recordings(paths.recordings()), m_files(files), m_library(paths, std::move(files)) {}

std::optional<MeetingListItem> LibraryPart::selectedMeeting() const {
    if (!m_selectedSidebarItem || m_selectedSidebarItem->kind != SidebarItem::Kind::meeting)
        return std::nullopt;
    return find(m_selectedSidebarItem->meetingID);
}

std::optional<MeetingListItem> LibraryPart::find(const QString& meetingID) const {
    const auto found = std::find_if(m_meetings.begin(), m_meetings.end(),
                                    [&](const MeetingListItem& meeting) { return meeting.id == meetingID; });
    return found == m_meetings.end() ? std::nullopt : std::optional(*found);
}

void LibraryPart::reloadMeetings() {
    publish(m_meetings, m_library.scan(), "meetings", &LibraryPart::meetingsChanged);
}

void LibraryPart::restoreLatestRecording() {
    LatestRecording latest = latestRecording(m_recordings, *m_files);
    if (latest.listed)
        setLastRecording(std::move(latest.path));
}

void LibraryPart::setLastRecording(std::optional<QString> path) {
    publish(m_lastRecording, std::move(path), "lastRecording", &LibraryPart::lastRecordingChanged);
}

void LibraryPart::setSelectedSidebarItem(std::optional<SidebarItem> item) {
    publish(m_selectedSidebarItem, std::move(item), "selectedSidebarItem", &LibraryPart::selectedSidebarItemChanged);
}

void LibraryPart::setImportProgress(std::optional<double> fraction) {
    publish(m_importProgress, fraction, "importProgress", &LibraryPart::importProgressChanged);
}

} // namespace corvane
