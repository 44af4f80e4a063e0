// The application around its window: the tray, when the window shows, what a start asks for, what keeps the machine
// awake, and the ways to the end. Owned by main, on the main thread.
#pragma once

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Shell/ImportDialog.h"
#include "CorvaneApp/Shell/TrayItem.h"
#include "CorvaneApp/Views/KeepAwake.h"
#include "CorvaneApp/Views/QuitController.h"
#include "CorvaneApp/Views/Window/DashboardWindowController.h"
#include "CorvaneCore/Interfaces/DesktopPreferences.h"
#include "CorvaneCore/Interfaces/PowerManagement.h"
#include "CorvaneCore/Services/StartRequest.h"

#include <QSessionManager>
#include <QTimer>

namespace corvane {

struct DesktopServices {
    std::shared_ptr<DesktopPreferences> preferences;
    std::shared_ptr<PowerManagement> power;
    QString windowStateFile;
};

class Application final : public QObject {
    Q_OBJECT

public:
    Application(const AppPaths& paths, const AppServices& services, DesktopServices desktop);
    ~Application() override;

    // What this process was started for.
    void start(const StartRequest& request);
    // What another start asks of this process.
    void take(const StartRequest& request);
    // A signal or the session manager asks the process to end.
    void endSoon();

Q_SIGNALS:
    // No request is taken any more; the process ends when `ended` comes.
    void ending();
    void ended();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void act(TrayAction action);
    void followRecording();
    void followTray();
    // Opens the window when the desktop's preferences are known, so that it need not change its colours at once.
    void openWindow();
    void showWindow();
    void showIfNeeded();
    void import(const QStringList& files);
    void importNext();
    void commitData(QSessionManager& session);
    void endWithin(std::chrono::milliseconds patience);

    DesktopServices m_desktop;
    AppModel m_model;
    QuitController m_quit;
    KeepAwake m_keepAwake;
    DashboardWindowController m_window;
    ImportDialog m_importDialog;
    TrayItem m_tray;
    StartRequest m_request; // the last one that brought the window up
    bool m_isWindowWanted = false;
    bool m_mayShowWithoutTray = false;
    bool m_hadTray = false;
    QTimer m_preferencesDeadline;
    QTimer m_trayDeadline;
    QStringList m_imports; // still to be made
    bool m_isImporting = false;
};

} // namespace corvane
