#include "CorvanePlatform/Linux/Desktop/DesktopPowerManagement.h"

#include <utility>

namespace corvane {

namespace {

const QString applicationName = QStringLiteral("Corvane");
const QString logindService = QStringLiteral("org.freedesktop.login1");
const QString logindPath = QStringLiteral("/org/freedesktop/login1");
const QString logindManager = QStringLiteral("org.freedesktop.login1.Manager");

} // namespace

// The first asks for no more than what is needed; the second leaves the screen on as well.
const std::vector<DesktopPowerManagement::DesktopService>& DesktopPowerManagement::desktopServices() {
    static const std::vector<DesktopService> services{
        {QStringLiteral("org.freedesktop.PowerManagement"), QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
         QStringLiteral("org.freedesktop.PowerManagement.Inhibit")},
        {QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("/org/freedesktop/ScreenSaver"),
         QStringLiteral("org.freedesktop.ScreenSaver")}};
    return services;
}

void DesktopPowerManagement::keepAwake(const QString& reason) {
    if (m_holding != 0)
        return;
    m_holding = ++m_lastWish;
    m_reason = reason;
    // A sleep that the user asks for by closing the lid is not refused: logind lets that pass by itself.
    inhibitBySystem("sleep:idle", "block", [this] { inhibitByDesktop(0); });
    // Going down cannot be refused, only put off until what was recorded is on the disk.
    inhibitBySystem("shutdown", "delay", [] {});
}

void DesktopPowerManagement::release() {
    m_holding = 0;
    m_locks.clear(); // closing them is what lifts them
    if (const auto inhibition = std::exchange(m_desktopInhibition, std::nullopt))
        uninhibit(*inhibition);
}

void DesktopPowerManagement::inhibitBySystem(const char* what, const char* mode,
                                             const std::function<void()>& onRefusal) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(logindService, logindPath, logindManager, QStringLiteral("Inhibit"));
    message.setArguments({QString::fromLatin1(what), applicationName, m_reason, QString::fromLatin1(mode)});
    m_system.use([this](QDBusConnection* bus) {
        // From any sender: naming the service would have the library ask the bus for its owner and wait.
        if (bus && !std::exchange(m_listens, true))
            bus->connect({}, logindPath, logindManager, QStringLiteral("PrepareForShutdown"), this,
                         SLOT(takeShutdown(bool, QDBusMessage)));
    });
    m_system.call(message, [this, wish = m_holding, onRefusal](const std::optional<QDBusMessage>& reply) {
        if (wish != m_holding)
            return; // the lock goes with the reply
        const auto lock =
            reply ? reply->arguments().value(0).value<QDBusUnixFileDescriptor>() : QDBusUnixFileDescriptor();
        if (!lock.isValid()) {
            onRefusal();
            return;
        }
        m_logind = reply->service();
        m_locks.push_back(lock);
    });
}

void DesktopPowerManagement::inhibitByDesktop(std::size_t candidate) {
    if (candidate >= desktopServices().size())
        return;
    const DesktopService& service = desktopServices()[candidate];
    QDBusMessage message =
        QDBusMessage::createMethodCall(service.name, service.path, service.interface, QStringLiteral("Inhibit"));
    message.setArguments({applicationName, m_reason});
    m_session.call(message, [this, service, candidate, wish = m_holding](const std::optional<QDBusMessage>& reply) {
        if (!reply) {
            if (wish == m_holding)
                inhibitByDesktop(candidate + 1);
            return;
        }
        const DesktopInhibition inhibition{service, reply->arguments().value(0).toUInt()};
        if (wish == m_holding)
            m_desktopInhibition = inhibition;
        else
            uninhibit(inhibition);
    });
}

void DesktopPowerManagement::uninhibit(const DesktopInhibition& inhibition) {
    const DesktopService& service = inhibition.service;
    QDBusMessage message =
        QDBusMessage::createMethodCall(service.name, service.path, service.interface, QStringLiteral("UnInhibit"));
    message.setArguments({inhibition.cookie});
    m_session.call(message, [](const std::optional<QDBusMessage>&) {});
}

void DesktopPowerManagement::takeShutdown(bool isStarting, const QDBusMessage& message) {
    if (isStarting && m_holding != 0 && message.service() == m_logind)
        Q_EMIT shuttingDown();
}

} // namespace corvane
