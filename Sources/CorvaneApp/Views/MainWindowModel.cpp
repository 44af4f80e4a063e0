#include "CorvaneApp/Views/MainWindowModel.h"

#include "CorvaneApp/Model/AppModel.h"

#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

MainWindowModel::MainWindowModel(AppModel& model, const Clock& clock,
                                 TranscriptPanelModel::PutOnClipboard putOnClipboard, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_sidebar(model, clock),
      m_detail(model, std::move(putOnClipboard)),
      m_speakerProfiles(model),
      m_shortcuts(model, m_sidebar, m_detail, m_speakerProfiles),
      m_settings(model),
      m_setup(model) {
    connect(&m_setup, &SetupWizardModel::isShowingSetupWizardChanged, this,
            &MainWindowModel::isShowingSetupWizardChanged);
    connect(&m_model.library(), &LibraryPart::selectedSidebarItemChanged, this, &MainWindowModel::showPage);
    connect(&m_model.library(), &LibraryPart::meetingsChanged, &m_sidebar, &SidebarModel::refresh);
    connect(&m_model.library(), &LibraryPart::selectedSidebarItemChanged, &m_sidebar, &SidebarModel::refresh);
    connect(&m_model.updates(), &UpdatesPart::updateCheckStateChanged, &m_sidebar, &SidebarModel::refresh);
    // "just now" does not stay true.
    m_refreshSidebar.setInterval(20s);
    connect(&m_refreshSidebar, &QTimer::timeout, &m_sidebar, &SidebarModel::refresh);
    m_refreshSidebar.start();
    m_sidebar.refresh();
    showPage();
}

// A page is told before the view makes it, and told that it goes before the view takes it down.
void MainWindowModel::showPage() {
    if (page() == QStringLiteral("speakerProfiles"))
        m_speakerProfiles.appear();
    else
        m_speakerProfiles.leave();
    Q_EMIT pageChanged();
}

QString MainWindowModel::page() const {
    const auto& item = m_model.library().selectedSidebarItem();
    if (item && item->kind == SidebarItem::Kind::speakerProfiles)
        return QStringLiteral("speakerProfiles");
    if (item && item->kind == SidebarItem::Kind::settings)
        return QStringLiteral("settings");
    return QStringLiteral("meeting");
}

void MainWindowModel::importDropped(const QList<QUrl>& files) {
    for (const QUrl& file : files)
        m_detail.importChosen(file);
}

} // namespace corvane
