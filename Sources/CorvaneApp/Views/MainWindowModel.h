// What the main window shows: the page beside the sidebar, and whether the setup wizard stands over it. Owned by the
// window's controller, on the main thread.
#pragma once

#include "CorvaneApp/Views/KeyboardShortcuts.h"
#include "CorvaneApp/Views/MeetingDetailModel.h"
#include "CorvaneApp/Views/SettingsPageModel.h"
#include "CorvaneApp/Views/SetupWizardModel.h"
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
    Q_PROPERTY(corvane::SettingsPageModel* settings READ settings CONSTANT)
    Q_PROPERTY(corvane::SetupWizardModel* setup READ setup CONSTANT)
    Q_PROPERTY(bool isShowingSetupWizard READ isShowingSetupWizard NOTIFY isShowingSetupWizardChanged)

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
    [[nodiscard]] SettingsPageModel* settings() { return &m_settings; }
    [[nodiscard]] SetupWizardModel* setup() { return &m_setup; }
    [[nodiscard]] bool isShowingSetupWizard() const { return m_setup.isShowingSetupWizard(); }

    // Files that were dropped on the window; what is no file of this machine is passed over.
    Q_INVOKABLE void importDropped(const QList<QUrl>& files);

Q_SIGNALS:
    void pageChanged();
    void isShowingSetupWizardChanged();

private:
    void showPage();

    AppModel& m_model;
    SidebarModel m_sidebar;
    MeetingDetailModel m_detail;
    SpeakerProfilesPageModel m_speakerProfiles;
    KeyboardShortcutsModel m_shortcuts;
    SettingsPageModel m_settings;
    SetupWizardModel m_setup;
    QTimer m_refreshSidebar;
};

} // namespace corvane
