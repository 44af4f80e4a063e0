#include "CorvanePlatform/Linux/Desktop/NotificationService.h"

#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Text/Characters.h"
#include "CorvanePlatform/Linux/Desktop/DesktopBus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <atomic>
#include <utility>

namespace corvane {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
constexpr int expiryMilliseconds = 5000;
// In the time that a service needs to start on demand it is not asked again.
constexpr int replyMilliseconds = 20'000;
constexpr int flushMilliseconds = 200;
constexpr uchar criticalUrgency = 2;
constexpr int maximumLine = 120; // characters

QString nextConnectionName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("corvane-notifications-%1").arg(++count);
}

QString keyOf(CallNoticeAnswer answer) {
    return answer == CallNoticeAnswer::record ? QStringLiteral("record") : QStringLiteral("not-now");
}

// Pairs of a key and a text. The key "default", which stands for a click on the notification itself, is not among them:
// many click a notification only to be rid of it, and must not find themselves recording others by that. Where a
// service shows no buttons, asking for the action of a notification brings up a menu of all when there is no default.
QStringList actionsOf(const CallNoticeContent& content) {
    QStringList actions;
    for (const CallNoticeButton& button : content.buttons)
        actions << keyOf(button.answer) << button.title;
    return actions;
}

// Critical, because some desktops hold back everything else while a window fills the screen, as calls often do. That
// lets a desktop ignore the time it is to be shown for; the owner of the notice takes it away all the same.
QVariantMap hints() {
    return {{QStringLiteral("urgency"), QVariant::fromValue(criticalUrgency)},
            {QStringLiteral("desktop-entry"), QStringLiteral("corvane")},
            {QStringLiteral("transient"), true},       // later, in a list, it could not be answered
            {QStringLiteral("suppress-sound"), true}}; // the others in the call would hear it
}

// One line of a length that every service shows whole: a page chooses its title, and some services would show ten
// thousand characters with the buttons below the screen.
QString shownLine(QString text) {
    std::ranges::replace_if(
        text, [](QChar character) { return character.category() == QChar::Other_Control; }, u' ');
    text = text.simplified();
    const QString start = firstCharacters(text, maximumLine);
    return start == text ? text : start + u'…';
}

} // namespace

NotificationService::NotificationService() {
    m_watcher.addWatchedService(serviceName);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
        if (std::exchange(m_onScreen, 0) != 0 && m_wasShown)
            answer(CallNoticeAnswer::closed);
    });
}

NotificationService::~NotificationService() {
    if (!m_bus)
        return;
    if (m_onScreen != 0) {
        closeOnScreen();
        flush();
    }
    QDBusConnection::disconnectFromBus(m_connectionName);
}

// Disconnecting drops what has not been written yet, and a notification would be left behind. The bus answers only when
// it has read all that came before.
void NotificationService::flush() {
    static_cast<void>(m_bus->call(
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")),
        QDBus::Block, flushMilliseconds));
}

void NotificationService::show(const CallNoticeContent& content, CallNotices::AnswerHandler onAnswer) {
    m_wish = Wish{.number = ++m_number, .content = content, .onAnswer = std::move(onAnswer)};
    m_wasShown = false;
    if (m_isBusy)
        return; // it is shown when the service has answered what it was asked before
    if (m_bus && m_bus->isConnected())
        askCapabilities();
    else
        connectToBus();
}

void NotificationService::takeAway() {
    m_wish.reset();
    closeOnScreen();
}

// The greeting of the bus cannot be had asynchronously, so that another thread waits for it.
void NotificationService::connectToBus() {
    const QString address = DesktopBus::address(DesktopBus::Which::session);
    if (address.isEmpty())
        return;
    if (m_bus)
        QDBusConnection::disconnectFromBus(m_connectionName);
    m_connectionName = nextConnectionName();
    m_isBusy = true;
    DesktopBus::makeTypesKnown();
    inBackground([address, name = m_connectionName] {
        return QDBusConnection::connectToBus(address, name);
    }).then(this, [this](QDBusConnection bus) {
        m_isBusy = false;
        m_bus = std::move(bus);
        if (!m_bus->isConnected())
            return;
        m_watcher.setConnection(*m_bus);
        // From any sender: naming the service would have the library ask the bus for its owner and wait.
        m_bus->connect({}, objectPath, serviceName, QStringLiteral("ActionInvoked"), this,
                       SLOT(takeAction(uint, QString, QDBusMessage)));
        m_bus->connect({}, objectPath, serviceName, QStringLiteral("NotificationClosed"), this,
                       SLOT(takeClosing(uint, uint, QDBusMessage)));
        if (m_wish)
            askCapabilities();
    });
}

void NotificationService::call(const char* method, const QVariantList& arguments,
                               const std::function<void(const std::optional<QDBusMessage>&)>& onReply) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(serviceName, objectPath, serviceName, QString::fromLatin1(method));
    message.setArguments(arguments);
    m_isBusy = true;
    auto* watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(message, replyMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, onReply] {
        watcher->deleteLater();
        m_isBusy = false;
        onReply(watcher->isError() ? std::nullopt : std::optional(watcher->reply()));
    });
}

// Asked each time: another service may have taken the place of the last one.
void NotificationService::askCapabilities() {
    call("GetCapabilities", {}, [this](const std::optional<QDBusMessage>& reply) {
        if (reply && m_wish)
            notify(reply->arguments().value(0).toStringList());
    });
}

void NotificationService::notify(const QStringList& capabilities) {
    const CallNoticeContent& content = m_wish->content;
    const QString line = shownLine(content.subtitle);
    const bool hasMarkup = capabilities.contains(QStringLiteral("body-markup"));
    // Without actions it is a reminder still.
    const bool hasActions = capabilities.contains(QStringLiteral("actions"));
    const QVariantList arguments{QStringLiteral("Corvane"),
                                 m_onScreen, // one that was taken away and is there still is replaced
                                 QStringLiteral("audio-input-microphone"),
                                 content.title,
                                 hasMarkup ? line.toHtmlEscaped() : line,
                                 hasActions ? actionsOf(content) : QStringList(),
                                 hints(),
                                 expiryMilliseconds};
    call("Notify", arguments, [this, number = m_wish->number](const std::optional<QDBusMessage>& reply) {
        if (reply)
            takeID(number, reply->arguments().value(0).toUInt(), reply->service());
    });
}

void NotificationService::takeID(int number, uint id, const QString& server) {
    m_onScreen = id;
    m_server = server;
    if (m_wish && m_wish->number == number)
        m_wasShown = id != 0;
    else if (m_wish)
        askCapabilities(); // the next notice takes the place of this one
    else
        closeOnScreen();
}

void NotificationService::closeOnScreen() {
    if (m_onScreen == 0 || !m_bus)
        return;
    QDBusMessage message =
        QDBusMessage::createMethodCall(m_server, objectPath, serviceName, QStringLiteral("CloseNotification"));
    message.setArguments({m_onScreen});
    static_cast<void>(m_bus->send(message));
}

bool NotificationService::isOnScreen(uint id, const QDBusMessage& message) const {
    return m_onScreen != 0 && id == m_onScreen && message.service() == m_server;
}

void NotificationService::takeAction(uint id, const QString& key, const QDBusMessage& message) {
    if (!isOnScreen(id, message) || !m_wasShown || !m_wish)
        return;
    for (const CallNoticeButton& button : m_wish->content.buttons) {
        if (keyOf(button.answer) == key) {
            answer(button.answer);
            return;
        }
    }
    answer(CallNoticeAnswer::closed); // an action of the service's own
}

void NotificationService::takeClosing(uint id, uint, const QDBusMessage& message) {
    if (!isOnScreen(id, message))
        return;
    m_onScreen = 0;
    if (m_wasShown)
        answer(CallNoticeAnswer::closed);
}

void NotificationService::answer(CallNoticeAnswer answer) {
    if (const auto wish = std::exchange(m_wish, std::nullopt))
        wish->onAnswer(answer);
}

} // namespace corvane
