#include "CorvanePlatform/Linux/Frontmost/AccessibleFrontWindow.h"

#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace corvane {

namespace {

// /proc holds no regular files of a known size, which the house's reader asks for.
QString contentOfProcFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(4096)) : QString();
}

} // namespace

QString applicationIdOfControlGroup(const QString& content) {
    // app[-<launcher>]-<application id>[@<number>].service or app[-<launcher>]-<application id>-<number>.scope, where a
    // hyphen of the id itself is written \x2d.
    static const QRegularExpression unit(
        QStringLiteral("/app-(?:[A-Za-z0-9_.\\\\]+-)?([A-Za-z0-9_.\\\\]+)(?:-[0-9]+\\.scope|(?:@[^/]*)?\\.service)"));
    QString id = unit.match(content).captured(1);
    return id.replace(QLatin1String("\\x2d"), QLatin1String("-"));
}

QString applicationIdOfProcess(qint64 processIdentifier) {
    const QString directory = QStringLiteral("/proc/%1/").arg(processIdentifier);
    QString program = QFileInfo(QFile::symLinkTarget(directory + QStringLiteral("exe"))).fileName();
    // What was started from a terminal may lie in the scope of the terminal.
    FrontWindow window;
    window.applicationId = program;
    if (knownApplication(window))
        return program;
    QString id = applicationIdOfControlGroup(contentOfProcFile(directory + QStringLiteral("cgroup")));
    return id.isEmpty() ? program : id;
}

FrontWindowReading AccessibleFrontWindow::read(const Deadline& deadline) {
    if (!m_last || !m_bus.isActive(m_last->window, deadline))
        m_last = find(deadline);
    if (!m_last)
        return {};
    FrontWindowReading reading{.outcome = FrontWindowReading::Outcome::window};
    FrontWindow& window = reading.window;
    window.source = FrontWindowSource::accessibility;
    window.title = m_bus.name(m_last->window, deadline);
    window.processIdentifier = m_bus.processOf(m_last->window.busName, deadline);
    window.identity = QString::fromUtf8("atspi:" + m_last->window.busName + m_last->window.path);
    if (window.processIdentifier)
        window.applicationId = applicationIdOfProcess(*window.processIdentifier);
    // The proxy of a sandbox stands in the place of the application.
    if (window.applicationId.isEmpty() || window.applicationId == QLatin1String("xdg-dbus-proxy"))
        window.applicationId = m_bus.name(m_last->application, deadline).value_or(QString());
    return reading;
}

std::optional<AccessibleFrontWindow::Found> AccessibleFrontWindow::find(const Deadline& deadline) {
    for (const AccessibleObject& application : m_bus.applications(deadline))
        if (auto window = m_bus.activeWindow(application, deadline))
            return Found{.application = application, .window = *window};
    return std::nullopt;
}

} // namespace corvane
