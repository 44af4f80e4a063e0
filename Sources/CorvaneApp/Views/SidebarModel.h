// The sidebar: a row per meeting, the two buttons below the list, and the question before a meeting is deleted. Owned
// by the main window's model, on the main thread.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneApp/Views/RowListModel.h"

#include <QDateTime>

#include <optional>

namespace corvane {

class AppModel;
class Clock;
struct MeetingListItem;

struct SidebarRow {
    Q_GADGET
    Q_PROPERTY(QString meetingID MEMBER meetingID)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(QString relativeTime MEMBER relativeTime)
    Q_PROPERTY(bool isSelected MEMBER isSelected)

public:
    QString meetingID;
    QString title;
    QString status;
    QString relativeTime;
    bool isSelected = false;

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

struct SidebarFooterButton {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(bool isSelected MEMBER isSelected)
    Q_PROPERTY(QString badgeText MEMBER badgeText)
    Q_PROPERTY(int item MEMBER item)

public:
    QString title;
    QString iconName;
    bool isSelected = false;
    QString badgeText; // what the mark says to a screen reader; empty where there is no mark
    int item = 0;      // a SidebarItem::Kind

    friend bool operator==(const SidebarFooterButton&, const SidebarFooterButton&) = default;
};

// "just now", "59m ago", "3h ago", "2d ago": in whole units, and the same in every locale. A time in the future is now.
[[nodiscard]] QString stableRelativeTime(const QDateTime& time, const QDateTime& now);

class SidebarModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* meetings READ meetings CONSTANT)
    Q_PROPERTY(QVariantList footerButtons READ footerButtons NOTIFY footerButtonsChanged)
    Q_PROPERTY(bool isAskingDeletion READ isAskingDeletion NOTIFY isAskingDeletionChanged)

public:
    // Borrows both, which outlive it.
    SidebarModel(AppModel& model, const Clock& clock, QObject* parent = nullptr);

    [[nodiscard]] QAbstractItemModel* meetings() { return &m_meetings; }
    [[nodiscard]] QVariantList footerButtons() const { return variantList(m_footer); }
    [[nodiscard]] bool isAskingDeletion() const { return m_pendingDeletion.has_value(); }

    // Takes what the model holds now.
    void refresh();

    Q_INVOKABLE void reload();
    // -1 if none is selected.
    Q_INVOKABLE int selectedRow() const;
    Q_INVOKABLE void selectMeeting(const QString& meetingID);
    // The page of a meeting without any, from which the first is recorded or imported.
    Q_INVOKABLE void selectNoMeeting();
    Q_INVOKABLE void selectFooterItem(int item);
    Q_INVOKABLE void showInFileManager(const QString& meetingID);
    // Asks first.
    Q_INVOKABLE void deleteMeeting(const QString& meetingID);
    Q_INVOKABLE void confirmDeletion();
    Q_INVOKABLE void cancelDeletion();

Q_SIGNALS:
    void footerButtonsChanged();
    void isAskingDeletionChanged();

private:
    [[nodiscard]] std::vector<SidebarRow> makeRows() const;
    [[nodiscard]] std::vector<SidebarFooterButton> makeFooter() const;
    void setPendingDeletion(std::optional<QString> meetingID);

    AppModel& m_model;
    const Clock& m_clock;
    ValueListModel<SidebarRow> m_meetings;
    std::vector<SidebarFooterButton> m_footer;
    std::optional<QString> m_pendingDeletion;
};

} // namespace corvane
