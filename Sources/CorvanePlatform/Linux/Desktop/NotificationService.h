// The desktop's notification service as DesktopCallNotices needs it: one notification of ours at a time. Whatever the
// service does not do, or does not answer, is left undone. Main thread; nothing here waits for the bus, but
// the destructor for the fifth of a second at most.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

namespace corvane {

class NotificationService final : public QObject {
    Q_OBJECT

public:
    NotificationService();
    ~NotificationService() override; // takes away what is shown

    void show(const CallNoticeContent& content, CallNotices::AnswerHandler onAnswer);
    // The present one, or the one that the service has not put up yet. No answer comes any more.
    void takeAway();
    // Of the one that show() was last called for.
    [[nodiscard]] bool wasShown() const { return m_wasShown; }

private Q_SLOTS:
    void takeAction(uint id, const QString& key, const QDBusMessage& message);
    void takeClosing(uint id, uint reason, const QDBusMessage& message);

private:
    struct Wish {
        int number; // of the call to show()
        CallNoticeContent content;
        CallNotices::AnswerHandler onAnswer;
    };

    void connectToBus();
    void askCapabilities();
    void notify(const QStringList& capabilities);
    void takeID(int number, uint id, const QString& server);
    void closeOnScreen();
    void flush();
    void answer(CallNoticeAnswer answer);
    [[nodiscard]] bool isOnScreen(uint id, const QDBusMessage& message) const;
    // Calls the service and gives the reply, or nothing, to a function on the main loop.
    void call(const char* method, const QVariantList& arguments,
              const std::function<void(const std::optional<QDBusMessage>&)>& onReply);

    QString m_connectionName;
    std::optional<QDBusConnection> m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_isBusy = false; // connecting, or the service owes an answer
    std::optional<Wish> m_wish;
    int m_number = 0;
    bool m_wasShown = false;
    uint m_onScreen = 0; // what the service last put up and has not told to be closed; 0 for none
    QString m_server;    // the unique name of who put it up
};

} // namespace corvane
