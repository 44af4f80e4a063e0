#include "CorvaneApp/Shell/Application.h"

#include "CorvaneApp/Shell/WindowActivation.h"

#include <QGuiApplication>

namespace corvane {

namespace {

using namespace std::chrono_literals;

// A portal that the desktop has first to start takes seconds; the window does not wait for that.
constexpr auto preferencesPatience = 150ms;
// A tray that starts together with Corvane may come a little later.
constexpr auto trayPatience = 1500ms;
// One that went may only be started anew.
constexpr auto lostTrayPatience = 5s;
// Before the machine goes down the system waits five seconds, as it is ordinarily set up.
constexpr auto shutdownPatience = 4s;
// Those who end a session or a service wait longer, but not for ever.
constexpr auto endPatience = 10s;

} // namespace

Application::Application(const AppPaths& paths, const AppServices& services, DesktopServices desktop)
    : m_desktop(std::move(desktop)),
      m_model(paths, services),
      m_quit(m_model),
      m_keepAwake(m_model.recording(), m_desktop.power),
      m_window(m_model, m_quit, services.clock, m_desktop.preferences, m_desktop.windowStateFile) {
    for (QTimer* timer : {&m_preferencesDeadline, &m_trayDeadline})
        timer->setSingleShot(true);
    connect(&m_preferencesDeadline, &QTimer::timeout, this, &Application::showWindow);
    connect(m_desktop.preferences.get(), &DesktopPreferences::changed, this, [this] {
        if (m_isWindowWanted && m_desktop.preferences->isKnown())
            showWindow();
    });
    connect(&m_trayDeadline, &QTimer::timeout, this, &Application::showIfNeeded);

    connect(&m_window, &DashboardWindowController::importRequested, this,
            [this] { m_importDialog.open(m_window.window()); });
    connect(&m_importDialog, &ImportDialog::chosen, this, [this](const QString& file) { import({file}); });
    connect(&m_tray, &TrayItem::chosen, this, &Application::act);
    connect(&m_tray, &TrayItem::clicked, this, [this] { act(TrayAction::openApp); });
    connect(&m_tray, &TrayItem::changed, this, &Application::followTray);
    connect(&m_model.recording(), &RecordingPart::recordingStateChanged, this, &Application::followRecording);
    connect(&m_model.recording(), &RecordingPart::finishingProgressChanged, this, &Application::followRecording);
    connect(&m_quit, &QuitController::quitWanted, this, [this] {
        Q_EMIT ending();
        Q_EMIT ended();
    });
    connect(m_desktop.power.get(), &PowerManagement::shuttingDown, this, [this] { endWithin(shutdownPatience); });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &Application::commitData, Qt::DirectConnection);
    qGuiApp->installEventFilter(this);
    followTray();
    followRecording();
}

Application::~Application() = default;

void Application::start(const StartRequest& request) {
    m_request = request;
    import(request.files);
    if (request.window == StartRequest::Window::never)
        return;
    m_mayShowWithoutTray = true;
    if (!m_model.setup().setupCompleted() || request.window == StartRequest::Window::show || !request.files.isEmpty()) {
        openWindow();
        return;
    }
    m_trayDeadline.start(trayPatience);
    followTray();
}

void Application::take(const StartRequest& request) {
    import(request.files);
    if (request.window == StartRequest::Window::never)
        return;
    m_mayShowWithoutTray = true;
    m_request = request;
    openWindow();
}

void Application::act(TrayAction action) {
    switch (action) {
    case TrayAction::startRecording:
        m_model.startRecording(std::nullopt);
        break;
    case TrayAction::stopRecording:
        static_cast<void>(m_model.stopRecording());
        break;
    case TrayAction::pauseRecording:
        m_model.pauseRecording();
        break;
    case TrayAction::resumeRecording:
        m_model.resumeRecording();
        break;
    case TrayAction::openApp:
        m_request = {};
        openWindow();
        break;
    }
}

void Application::followRecording() {
    const RecordingPart& recording = m_model.recording();
    const auto kind = recording.recordingState().kind;
    m_tray.setMenu(trayMenu(kind, recording.finishingProgress() ? Finishing::underWay : Finishing::no));
}

// Without a tray only the window leads back to itself.
void Application::followTray() {
    using WhenClosed = DashboardWindowController::WhenClosed;
    m_window.setWhenClosed(m_tray.isThere() ? WhenClosed::hide : WhenClosed::minimize);
    if (m_tray.isThere())
        m_trayDeadline.stop();
    else if (m_hadTray)
        m_trayDeadline.start(lostTrayPatience);
    m_hadTray = m_tray.isThere();
}

void Application::showIfNeeded() {
    if (m_mayShowWithoutTray && !m_tray.isThere() && !m_window.isShown())
        openWindow();
}

void Application::openWindow() {
    m_isWindowWanted = true;
    if (m_window.isShown() || m_desktop.preferences->isKnown())
        showWindow();
    else if (!m_preferencesDeadline.isActive())
        m_preferencesDeadline.start(preferencesPatience);
}

void Application::showWindow() {
    m_isWindowWanted = false;
    m_preferencesDeadline.stop();
    m_trayDeadline.stop();
    prepareActivation(m_request);
    if (!m_window.show())
        return;
    completeActivation(*m_window.window(), m_request);
    m_request = {};
}

void Application::import(const QStringList& files) {
    m_imports += files;
    if (!m_isImporting)
        importNext();
}

// One after the other: the window shows the progress of one.
void Application::importNext() {
    m_isImporting = !m_imports.isEmpty();
    if (!m_isImporting)
        return;
    m_model.importAudioFile(m_imports.takeFirst()).then(this, [this](const std::optional<QString>&) { importNext(); });
}

// Asked before it is known whether the desktop ends: it may only be saving, or the user may think better of it. What
// was recorded until now is on the disk; a recording ends when it is told to.
void Application::commitData(QSessionManager& session) {
    session.setRestartHint(QSessionManager::RestartNever); // a recorder comes with the session only if it is told to
}

// How the toolkit passes on that the session manager ends the application, and for nothing else here. Its own answer is
// to close the windows, which a window that is only minimised by closing would refuse.
bool Application::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Quit)
        return QObject::eventFilter(watched, event);
    endSoon();
    return true;
}

void Application::endSoon() {
    endWithin(endPatience);
}

void Application::endWithin(std::chrono::milliseconds patience) {
    m_imports.clear();
    Q_EMIT ending();
    m_quit.endSoon(patience);
}

} // namespace corvane
