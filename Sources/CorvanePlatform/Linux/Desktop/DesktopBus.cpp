#include "CorvanePlatform/Linux/Desktop/DesktopBus.h"

#include "CorvaneCore/Concurrency/Background.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>

#include <atomic>
#include <utility>

namespace corvane {

namespace {

constexpr int replyMilliseconds = 20'000; // a service may first have to start

QString nextName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("corvane-desktop-%1").arg(++count);
}

QString existing(const QString& socket) {
    return QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket : QString();
}

} // namespace

DesktopBus::DesktopBus(Which which, QObject* parent) : QObject(parent), m_which(which) {
    makeTypesKnown();
}

DesktopBus::~DesktopBus() {
    if (m_bus)
        QDBusConnection::disconnectFromBus(m_name);
}

// The library sees to it on a thread of its own, some time after the connection is made.
void DesktopBus::makeTypesKnown() {
    qRegisterMetaType<QDBusMessage>();
    qRegisterMetaType<QDBusVariant>();
    static_cast<void>(QDBusMetaType::typeToSignature(QMetaType::fromType<QDBusVariant>()));
}

QString DesktopBus::address(Which which) {
    if (which == Which::system) {
        const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
        return address.isEmpty() ? existing(QStringLiteral("/run/dbus/system_bus_socket")) : address;
    }
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address.startsWith(QLatin1String("autolaunch:")) ? QString() : address;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return runtime.isEmpty() ? QString() : existing(runtime + QStringLiteral("/bus"));
}

void DesktopBus::use(Use use) {
    if (m_bus && m_bus->isConnected()) {
        use(&*m_bus);
        return;
    }
    m_waiting.push_back(std::move(use));
    if (m_waiting.size() == 1)
        connectToBus();
}

// The greeting of the bus cannot be had asynchronously, so that another thread waits for it.
void DesktopBus::connectToBus() {
    if (std::exchange(m_bus, std::nullopt))
        QDBusConnection::disconnectFromBus(m_name);
    m_name = nextName();
    inBackground([address = address(m_which), name = m_name]() -> std::optional<QDBusConnection> {
        if (address.isEmpty())
            return std::nullopt;
        return QDBusConnection::connectToBus(address, name);
    }).then(this, [this](const std::optional<QDBusConnection>& bus) {
        m_bus = bus;
        serve(m_bus && m_bus->isConnected() ? &*m_bus : nullptr);
    });
}

void DesktopBus::serve(QDBusConnection* bus) {
    for (const Use& use : std::exchange(m_waiting, {}))
        use(bus);
}

void DesktopBus::call(const QDBusMessage& message, OnReply onReply) {
    use([this, message, onReply = std::move(onReply)](QDBusConnection* bus) {
        if (!bus) {
            onReply(std::nullopt);
            return;
        }
        auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(message, replyMilliseconds), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, onReply] {
            watcher->deleteLater();
            onReply(watcher->isError() ? std::nullopt : std::optional(watcher->reply()));
        });
    });
}

} // namespace corvane
