#include "CorvaneApp/Views/Window/DashboardWindowController.h"

#include "CorvaneApp/Views/MainWindowModel.h"
#include "CorvaneApp/Views/QuitController.h"
#include "CorvaneApp/Views/Window/ViewEngine.h"
#include "CorvaneCore/Interfaces/Clock.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>

#include <iostream>

namespace corvane {

DashboardWindowController::DashboardWindowController(AppModel& model, QuitController& quit,
                                                     std::shared_ptr<const Clock> clock,
                                                     std::shared_ptr<DesktopPreferences> preferences, QString stateFile,
                                                     QObject* parent)
    : QObject(parent),
      m_model(model),
      m_quit(quit),
      m_clock(std::move(clock)),
      m_appearance(std::move(preferences), std::move(stateFile)) {}

DashboardWindowController::~DashboardWindowController() {
    if (m_window)
        m_window->removeEventFilter(this);
    delete m_window.data();
}

bool DashboardWindowController::show() {
    if (!m_window && !make())
        return false;
    if (isShown())
        m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    else if (m_appearance.isMaximized())
        m_window->showMaximized();
    else
        m_window->show();
    m_window->raise();
    m_window->requestActivate();
    return true;
}

bool DashboardWindowController::isShown() const {
    return m_window && m_window->isVisible();
}

void DashboardWindowController::setWhenClosed(WhenClosed whenClosed) {
    m_whenClosed = whenClosed;
}

bool DashboardWindowController::make() {
    m_engine = makeViewEngine();
    auto windowModel = std::make_unique<MainWindowModel>(
        m_model, *m_clock, [](const QString& text) { QGuiApplication::clipboard()->setText(text); });
    connect(windowModel->detail(), &MeetingDetailModel::importRequested, this,
            &DashboardWindowController::importRequested);
    m_windowModel = std::move(windowModel);

    QQmlComponent component(m_engine.get(), QUrl(QStringLiteral("qrc:/Corvane/MainWindow.qml")));
    QObject* made = component.createWithInitialProperties(
        {{QStringLiteral("app"), QVariant::fromValue<QObject*>(m_windowModel.get())},
         {QStringLiteral("preferences"), QVariant::fromValue<QObject*>(&m_appearance)},
         {QStringLiteral("quit"), QVariant::fromValue<QObject*>(&m_quit)}});
    m_window = qobject_cast<QQuickWindow*>(made);
    if (!m_window) {
        delete made;
        std::cerr << "corvane: the window cannot be made: " << component.errorString().toStdString() << std::endl;
        return false;
    }
    if (m_appearance.windowSize().isValid())
        m_window->resize(m_appearance.windowSize().expandedTo(m_window->minimumSize()));
    const QRect available = m_window->screen()->availableGeometry();
    QRect frame({}, m_window->size().boundedTo(available.size()));
    frame.moveCenter(available.center());
    m_window->setPosition(frame.topLeft());
    m_window->installEventFilter(this);
    return true;
}

bool DashboardWindowController::eventFilter(QObject* watched, QEvent* event) {
    QQuickWindow* const window = m_window;
    if (window && event->type() == QEvent::Close) {
        m_appearance.rememberWindow(window->size(), window->visibility() == QWindow::Maximized);
        if (m_whenClosed == WhenClosed::minimize) {
            event->ignore();
            window->showMinimized();
        } else {
            event->accept();
            window->hide();
        }
        Q_EMIT closed();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corvane
