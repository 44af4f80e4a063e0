// A tray on a session bus, on a connection of its own: it takes items and lets the test be the user who reads their
// menu and clicks in it. Gone with its owner. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace corvane {

class FakeTray final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    explicit FakeTray(const QString& address);
    ~FakeTray() override;

    [[nodiscard]] bool works() const { return m_works; }
    [[nodiscard]] QStringList items() const { return m_items; } // bus names, the newest last
    [[nodiscard]] bool hasHost() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }

    // Of the newest item: a text property, the enabled entries of its menu, a choice in it, and a click on the item
    // itself.
    [[nodiscard]] QString property(const QString& name);
    [[nodiscard]] QStringList menu();
    [[nodiscard]] bool choose(const QString& text);
    void click();

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service);
    void RegisterStatusNotifierHost(const QString&) {}

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& item);
    void StatusNotifierItemUnregistered(const QString& item);
    void StatusNotifierHostRegistered();

private:
    struct Entry {
        int id;
        QString text;
    };
    [[nodiscard]] QList<Entry> entries();
    [[nodiscard]] QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                                    const QVariantList& arguments);

    QDBusConnection m_bus;
    QStringList m_items;
    bool m_works = false;
};

} // namespace corvane
