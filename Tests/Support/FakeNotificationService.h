// A notification service on a bus, on a connection of its own: it remembers what it was asked to show and lets the test
// be the user. Gone with its owner. Main thread.
#pragma once

#include "Support/PrintQt.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace corvane {

class FakeNotificationService final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        uint id;
        uint replaces;
        QString title;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int expiryMilliseconds;
    };

    QStringList capabilities{u"actions"_s, u"body"_s, u"body-markup"_s};
    bool isSlow = false; // Notify is answered when the test says so
    bool confirmsClosing = true;
    std::vector<Shown> shown;
    std::vector<uint> closed; // as the application asked

    explicit FakeNotificationService(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, u"fake-notifications"_s)) {
        m_works = m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
                  m_bus.registerService(u"org.freedesktop.Notifications"_s);
    }
    ~FakeNotificationService() override { QDBusConnection::disconnectFromBus(u"fake-notifications"_s); }

    [[nodiscard]] bool works() const { return m_works; }
    void answerNotify() {
        isSlow = false;
        m_bus.send(m_owed.createReply(QVariant(shown.back().id)));
    }

public Q_SLOTS:
    QStringList GetCapabilities() const { return capabilities; }
    uint Notify(const QString&, uint replaces, const QString&, const QString& title, const QString& body,
                const QStringList& actions, const QVariantMap& hints, int expiry) {
        const uint id = replaces != 0 ? replaces : ++m_lastID;
        shown.push_back({id, replaces, title, body, actions, hints, expiry});
        if (isSlow) {
            setDelayedReply(true);
            m_owed = message();
        }
        return id;
    }
    void CloseNotification(uint id) {
        closed.push_back(id);
        if (confirmsClosing)
            Q_EMIT NotificationClosed(id, 3);
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString& key);
    void NotificationClosed(uint id, uint reason);

private:
    QDBusConnection m_bus;
    QDBusMessage m_owed;
    uint m_lastID = 40;
    bool m_works = false;
};

} // namespace corvane
