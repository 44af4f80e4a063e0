// The main window: made when it is first shown, hidden when it is closed, and the same one again after that. Until then
// nothing of the view engine is loaded. Owned by the application, on the main thread.
#pragma once

#include "CorvaneApp/Views/Window/Appearance.h"

#include <QObject>
#include <QPointer>
#include <QQuickWindow>

#include <memory>

class QQmlEngine;

namespace corvane {

class AppModel;
class Clock;
class MainWindowModel;
class QuitController;

class DashboardWindowController final : public QObject {
    Q_OBJECT

public:
    // Borrows the model and the way out, which outlive it.
    DashboardWindowController(AppModel& model, QuitController& quit, std::shared_ptr<const Clock> clock,
                              std::shared_ptr<DesktopPreferences> preferences, QString stateFile,
                              QObject* parent = nullptr);
    ~DashboardWindowController() override;

    // Brings the window to the front and asks for the keyboard. False, with the reason on standard error, if it cannot
    // be made.
    bool show();
    [[nodiscard]] bool isShown() const;
    // What the user's closing does. A window that nothing else would bring back is kept in the taskbar.
    enum class WhenClosed { hide, minimize };
    void setWhenClosed(WhenClosed whenClosed);
    [[nodiscard]] QQuickWindow* window() const { return m_window; }

Q_SIGNALS:
    // The user has closed it. Whatever goes on, goes on.
    void closed();
    // The user wants a file to import, and has to be asked which.
    void importRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool make();

    AppModel& m_model;
    QuitController& m_quit;
    std::shared_ptr<const Clock> m_clock;
    Appearance m_appearance;
    std::unique_ptr<MainWindowModel> m_windowModel;
    std::unique_ptr<QQmlEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    WhenClosed m_whenClosed = WhenClosed::hide;
};

} // namespace corvane
