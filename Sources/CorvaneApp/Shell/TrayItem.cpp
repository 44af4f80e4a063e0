#include "CorvaneApp/Shell/TrayItem.h"

#include "CorvaneApp/Views/Window/SymbolImageProvider.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QIcon>

namespace corvane {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

// Panels are dark or light whatever the windows are, and do not say which: tones that stand out from both.
const QColor calmColor(0x2f, 0x93, 0x99);
const QColor recordingColor(0xe0, 0x45, 0x3a);

QIcon iconFor(const QString& name) {
    const QColor color = name.endsWith(QLatin1String(".fill")) ? recordingColor : calmColor;
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(QPixmap::fromImage(symbolImage(name, color, QSize(side, side))));
    return icon;
}

} // namespace

TrayItem::TrayItem(QObject* parent) : QObject(parent), m_menu(std::make_unique<QMenu>()) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_isDecided = true;
        return;
    }
    m_watcher.setConnection(bus);
    m_watcher.addWatchedService(watcherService);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                decide(false); // the item of the old one is made anew for the new one
                if (!owner.isEmpty())
                    askForTray();
            });
    // From any sender: naming the service would have the library ask the bus for its owner and wait.
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus.connect({}, watcherPath, watcherService, QString::fromLatin1(signal), this, SLOT(askForTray()));
    bus.connect({}, {}, QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(loseBus()));
    askForTray();
}

TrayItem::~TrayItem() = default;

// The icon must not be made before there is a tray: the toolkit decides once for the life of the process how trays are
// reached, and then never sees a later one.
void TrayItem::askForTray() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question.setArguments({watcherService});
    ask(question, &TrayItem::takeWatcher);
}

void TrayItem::takeWatcher(bool isThere) {
    if (!isThere) {
        decide(false);
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({watcherService, QStringLiteral("IsStatusNotifierHostRegistered")});
    ask(question, &TrayItem::takeHost);
}

void TrayItem::loseBus() {
    decide(false);
}

void TrayItem::takeHost(bool isThere) {
    decide(isThere);
}

void TrayItem::ask(const QDBusMessage& question, void (TrayItem::*onAnswer)(bool)) {
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, onAnswer] {
        watcher->deleteLater();
        const QVariant answer = watcher->isError() ? QVariant() : watcher->reply().arguments().value(0);
        (this->*onAnswer)(answer.canConvert<QDBusVariant>() ? answer.value<QDBusVariant>().variant().toBool()
                                                            : answer.toBool());
    });
}

void TrayItem::decide(bool hasTray) {
    const bool isAnother = !m_isDecided || hasTray != isThere();
    m_isDecided = true;
    if (!hasTray)
        m_icon.reset();
    else if (!m_icon)
        show();
    if (isAnother)
        Q_EMIT changed();
}

void TrayItem::show() {
    m_icon = std::make_unique<QSystemTrayIcon>(iconFor(m_content.iconName));
    m_icon->setToolTip(m_content.title);
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            Q_EMIT clicked();
    });
    m_icon->show();
}

void TrayItem::setMenu(const TrayMenu& menu) {
    if (menu == m_content)
        return;
    const bool hasOtherIcon = menu.iconName != m_content.iconName;
    m_content = menu;
    m_menu->clear();
    for (const TrayMenuItem& item : m_content.items) {
        QAction* action = m_menu->addAction(item.text);
        action->setEnabled(item.isEnabled);
        connect(action, &QAction::triggered, this, [this, chosenAction = item.action] { Q_EMIT chosen(chosenAction); });
    }
    if (m_icon && hasOtherIcon)
        m_icon->setIcon(iconFor(m_content.iconName));
}

} // namespace corvane
