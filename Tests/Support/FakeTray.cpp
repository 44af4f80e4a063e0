#include "Support/FakeTray.h"

#include "Support/PrintQt.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QEventLoop>

namespace corvane {

namespace {

const QString connectionName = u"fake-tray"_s;

struct Layout {
    int id = 0;
    QVariantMap properties;
    QList<Layout> children;
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Layout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        Layout inner;
        child.variant().value<QDBusArgument>() >> inner;
        layout.children.append(inner);
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

} // namespace

FakeTray::FakeTray(const QString& address) : m_bus(QDBusConnection::connectToBus(address, connectionName)) {
    auto* watcher = new QDBusServiceWatcher(this);
    watcher->setConnection(m_bus);
    watcher->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(this, &FakeTray::StatusNotifierItemRegistered, watcher,
            [watcher](const QString& item) { watcher->addWatchedService(item); });
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& item) {
        m_items.removeAll(item);
        Q_EMIT StatusNotifierItemUnregistered(item);
    });
    m_works = m_bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                       QDBusConnection::ExportAllProperties) &&
              m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
}

FakeTray::~FakeTray() {
    QDBusConnection::disconnectFromBus(connectionName);
}

void FakeTray::RegisterStatusNotifierItem(const QString& service) {
    const QString item = service.startsWith(u'/') ? message().service() : service;
    m_items.append(item);
    Q_EMIT StatusNotifierItemRegistered(item);
}

QDBusMessage FakeTray::call(const QString& path, const QString& interface, const QString& method,
                            const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(m_items.value(m_items.size() - 1), path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::BlockWithGui, 5000); // the item may ask in turn
}

QString FakeTray::property(const QString& name) {
    const QDBusMessage reply = call(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                    {u"org.kde.StatusNotifierItem"_s, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant().toString();
}

QList<FakeTray::Entry> FakeTray::entries() {
    const QString path = call(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                              {u"org.kde.StatusNotifierItem"_s, u"Menu"_s})
                             .arguments()
                             .value(0)
                             .value<QDBusVariant>()
                             .variant()
                             .value<QDBusObjectPath>()
                             .path();
    const QDBusMessage reply = call(path.isEmpty() ? u"/MenuBar"_s : path, u"com.canonical.dbusmenu"_s, u"GetLayout"_s,
                                    {0, -1, QStringList()});
    Layout root;
    if (reply.arguments().size() == 2)
        reply.arguments()[1].value<QDBusArgument>() >> root;
    QList<Entry> entries;
    for (const Layout& child : root.children) {
        if (child.properties.value(u"enabled"_s, true).toBool())
            entries.append({child.id, child.properties.value(u"label"_s).toString().remove(u'_')});
    }
    return entries;
}

QStringList FakeTray::menu() {
    QStringList texts;
    for (const Entry& entry : entries())
        texts.append(entry.text);
    return texts;
}

bool FakeTray::choose(const QString& text) {
    for (const Entry& entry : entries()) {
        if (entry.text == text) {
            const QDBusMessage reply = call(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, u"Event"_s,
                                            {entry.id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
            return reply.type() == QDBusMessage::ReplyMessage;
        }
    }
    return false;
}

void FakeTray::click() {
    (void)call(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, u"Activate"_s, {0, 0});
}

} // namespace corvane
