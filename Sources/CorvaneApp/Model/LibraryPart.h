// The list of meetings, what is selected in it, and the newest recording.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Library/MeetingLibrary.h"

#include <memory>
#include <optional>

namespace corvane {

// What is selected in the main window.
struct SidebarItem {
    enum class Kind { meeting, speakerProfiles, settings };

    Kind kind = Kind::settings;
    QString meetingID; // of a meeting only

    [[nodiscard]] static SidebarItem meeting(const QString& id) { return {Kind::meeting, id}; }
    [[nodiscard]] static SidebarItem speakerProfiles() { return {Kind::speakerProfiles, {}}; }
    [[nodiscard]] static SidebarItem settings() { return {Kind::settings, {}}; }

    friend bool operator==(const SidebarItem&, const SidebarItem&) = default;
};

class LibraryPart final : public ModelPart {
    Q_OBJECT

public:
    LibraryPart(const AppPaths& paths, std::shared_ptr<const FileTree> files, QObject* parent = nullptr);

    [[nodiscard]] const std::vector<MeetingListItem>& meetings() const { return m_meetings; }
    [[nodiscard]] const std::optional<SidebarItem>& selectedSidebarItem() const { return m_selectedSidebarItem; }
    [[nodiscard]] const std::optional<QString>& lastRecording() const { return m_lastRecording; }
    // The fraction copied of a file that is being imported, from 0 to 1; absent when none is.
    [[nodiscard]] const std::optional<double>& importProgress() const { return m_importProgress; }

    // The listed meeting that is selected, if any.
    [[nodiscard]] std::optional<MeetingListItem> selectedMeeting() const;
    [[nodiscard]] std::optional<MeetingListItem> find(const QString& meetingID) const;

    // Rebuilds the list from the disk.
    void reloadMeetings();
    // Takes the newest recording on the disk; a folder that cannot be listed changes nothing.
    void restoreLatestRecording();

    void setLastRecording(std::optional<QString> path);
    void setSelectedSidebarItem(std::optional<SidebarItem> item);
    void setImportProgress(std::optional<double> fraction);

Q_SIGNALS:
    void meetingsChanged();
    void selectedSidebarItemChanged();
    void lastRecordingChanged();
    void importProgressChanged();

private:
    QString m_recordings;
    std::shared_ptr<const FileTree> m_files;
    MeetingLibrary m_library;
    std::vector<MeetingListItem> m_meetings;
    std::optional<SidebarItem> m_selectedSidebarItem;
    std::optional<QString> m_lastRecording;
    std::optional<double> m_importProgress;
};

} // namespace corvane
