// A desktop of the test's own: an X server without a screen, a window manager, a session bus and, if asked for, its
// accessibility; windows and a real browser can be shown on it. Everything ends with it, also when the test is killed.
// Main thread.
#pragma once

#include "Support/PrivateSessionBus.h"

#include "CorvanePlatform/Linux/Frontmost/DesktopLook.h"

#include <vector>

namespace corvane {

class PrivateDesktop {
public:
    enum class Accessibility { absent, off, on };
    enum class WindowManager { absent, present };

    static bool isInstalled();

    // Throws std::runtime_error if it does not come up.
    explicit PrivateDesktop(Accessibility accessibility = Accessibility::absent,
                            WindowManager manager = WindowManager::present);
    ~PrivateDesktop();
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    [[nodiscard]] DesktopSession session() const;
    [[nodiscard]] std::int64_t xServer() const { return m_xServer->processID(); }
    [[nodiscard]] std::int64_t sessionBus() const { return m_bus.processID(); }
    [[nodiscard]] std::int64_t accessibilityBus() const; // the daemon; 0 if there is none

    // A window of a program of its own, in front. It is closed with its process.
    enum class Title { utf8, old }; // old programs set no other title than WM_NAME
    [[nodiscard]] std::shared_ptr<LaunchedProcess> showWindow(const QString& instance, const QString& windowClass,
                                                              const QString& title, Title kind = Title::utf8);
    // Chromium with a profile of this desktop's: the first one stays, later ones hand it their arguments and end.
    [[nodiscard]] std::shared_ptr<LaunchedProcess> browse(const QStringList& arguments);
    void end(const std::shared_ptr<LaunchedProcess>& process);

private:
    [[nodiscard]] std::shared_ptr<LaunchedProcess> launch(const QString& program, const QStringList& arguments,
                                                          const QString& log = {});
    void startWindowManager();
    void startAccessibility(Accessibility accessibility);

    QTemporaryDir m_directory;
    PrivateSessionBus m_bus;
    ProcessEnvironment m_environment;
    std::vector<std::shared_ptr<LaunchedProcess>> m_processes;
    std::shared_ptr<LaunchedProcess> m_xServer;
    std::shared_ptr<LaunchedProcess> m_accessibility;
};

} // namespace corvane
