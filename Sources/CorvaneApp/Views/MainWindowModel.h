// What the main window shows: the page beside the sidebar, and whether the setup wizard stands over it. Owned by the
// window's controller, on the main thread.
#pragma once

#include "CorvaneApp/Views/KeyboardShortcuts.h"
#include "CorvaneApp/Views/MeetingDetailModel.h"
#include "CorvaneApp/Views/SidebarModel.h"
#include "CorvaneApp/Views/SpeakerProfilesPageModel.h"

#include <QUrl>

namespace corvane {

class MainWindowModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString page READ page NOTIFY pageChanged)
    Q_PROPERTY(corvane::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(corvane::MeetingDetailModel* detail READ detail CONSTANT)
    Q_PROPERTY(corvane::SpeakerProfilesPageModel* speakerProfiles READ speakerProfiles CONSTANT)
    Q_PROPERTY(corvane::KeyboardShortcutsModel* shortcuts READ shortcuts CONSTANT)

public:
    // Borrows model and clock, which outlive it.
    MainWindowModel(AppModel& model, const Clock& clock, TranscriptPanelModel::PutOnClipboard putOnClipboard,
                    QObject* parent = nullptr);

    // "meeting", "speakerProfiles" or "settings".
    [[nodiscard]] QString page() const;
    [[nodiscard]] SidebarModel* sidebar() { return &m_sidebar; }
    [[nodiscard]] MeetingDetailModel* detail() { return &m_detail; }
    [[nodiscard]] SpeakerProfilesPageModel* speakerProfiles() { return &m_speakerProfiles; }
    [[nodiscard]] KeyboardShortcutsModel* shortcuts() { return &m_shortcuts; }

    // Files that were dropped on the window; what is no file of this machine is passed over.
    Q_INVOKABLE void importDropped(const QList<QUrl>& files);

Q_SIGNALS:
    void pageChanged();

private:
    void showPage();

    AppModel& m_model;
    SidebarModel m_sidebar;
    MeetingDetailModel m_detail;
    SpeakerProfilesPageModel m_speakerProfiles;
    KeyboardShortcutsModel m_shortcuts;
    QTimer m_refreshSidebar;
};

} // namespace corvane
