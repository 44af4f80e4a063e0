// Corvane's item in the tray of the desktop, with its menu. It is there while the desktop has a tray for it
// (org.kde.StatusNotifierWatcher with a host) and comes back with it. Owned by the application, main thread.
#pragma once

#include "CorvaneApp/Views/TrayMenu.h"

#include <QDBusServiceWatcher>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

class QDBusMessage;

namespace corvane {

class TrayItem final : public QObject {
    Q_OBJECT

public:
    explicit TrayItem(QObject* parent = nullptr);
    ~TrayItem() override;

    void setMenu(const TrayMenu& menu);
    [[nodiscard]] bool isThere() const { return m_icon != nullptr; }
    // Whether the desktop has said if it has a tray.
    [[nodiscard]] bool isDecided() const { return m_isDecided; }

Q_SIGNALS:
    void chosen(corvane::TrayAction action);
    // Where the desktop passes a click on the item on instead of opening the menu.
    void clicked();
    // isThere() or isDecided() is another.
    void changed();

private Q_SLOTS:
    void askForTray();
    void loseBus();

private:
    void ask(const QDBusMessage& question, void (TrayItem::*onAnswer)(bool));
    void takeWatcher(bool isThere);
    void takeHost(bool isThere);
    void decide(bool hasTray);
    void show();

    TrayMenu m_content;
    QDBusServiceWatcher m_watcher;
    bool m_isDecided = false;
    std::unique_ptr<QMenu> m_menu; // outlives the icon
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace corvane
