// What is known of the Notion database that meetings are published to, and of the page of each. Settings and pages are
// kept in the user defaults; the token never is.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Notion/NotionDatabase.h"

#include <QUuid>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace corvane {

struct NotionPropertyOption {
    QString name;
    QString type;

    friend bool operator==(const NotionPropertyOption&, const NotionPropertyOption&) = default;
};

struct NotionToast {
    QUuid id; // of this showing
    QString message;
    bool isError = false;

    friend bool operator==(const NotionToast&, const NotionToast&) = default;
};

class NotionPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool hasNotionToken READ hasNotionToken NOTIFY hasNotionTokenChanged)
    Q_PROPERTY(QString notionDatabaseURL READ notionDatabaseURL NOTIFY settingsChanged)
    Q_PROPERTY(QString notionDatabaseTitle READ notionDatabaseTitle NOTIFY settingsChanged)
    Q_PROPERTY(QString notionMeetingIDPropertyName READ notionMeetingIDPropertyName NOTIFY settingsChanged)
    Q_PROPERTY(QString notionParticipantsPropertyName READ notionParticipantsPropertyName NOTIFY settingsChanged)
    Q_PROPERTY(QString notionSummaryPropertyName READ notionSummaryPropertyName NOTIFY settingsChanged)
    Q_PROPERTY(bool isFetchingNotionDatabase READ isFetchingNotionDatabase NOTIFY isFetchingNotionDatabaseChanged)
    Q_PROPERTY(bool isSyncingNotion READ isSyncingNotion NOTIFY isSyncingNotionChanged)
    Q_PROPERTY(QString selectedNotionPageURL READ selectedNotionPageURL NOTIFY selectedNotionPageURLChanged)

public:
    explicit NotionPart(std::shared_ptr<UserDefaults> defaults, QObject* parent = nullptr);

    [[nodiscard]] bool hasNotionToken() const { return m_hasToken; }
    // As the user entered it.
    [[nodiscard]] const QString& notionDatabaseURL() const { return m_databaseURL; }
    [[nodiscard]] const QString& notionDatabaseTitle() const { return m_databaseTitle; }
    // The columns that the user chose; may be empty.
    [[nodiscard]] const QString& notionMeetingIDPropertyName() const { return m_meetingIDProperty; }
    [[nodiscard]] const QString& notionParticipantsPropertyName() const { return m_participantsProperty; }
    [[nodiscard]] const QString& notionSummaryPropertyName() const { return m_summaryProperty; }
    // Of the database that was read last, by name.
    [[nodiscard]] const std::vector<NotionPropertyOption>& notionDatabaseProperties() const { return m_properties; }
    [[nodiscard]] bool isFetchingNotionDatabase() const { return m_isFetching; }
    [[nodiscard]] bool isSyncingNotion() const { return m_isSyncing; }
    // The page of the selected meeting in the present database; empty if none is known.
    [[nodiscard]] const QString& selectedNotionPageURL() const { return m_selectedPageURL; }
    [[nodiscard]] const std::optional<NotionToast>& notionToast() const { return m_toast; }
    // Earlier pages that a sync found and that the user has to decide about.
    [[nodiscard]] const std::vector<NotionPageMatch>& pendingNotionReplacementPages() const { return m_pendingPages; }

    // Takes the settings from the user defaults; what is not there stays as it is.
    void loadSettings();
    // Forgets what was known of the database before. The columns stay.
    void updateNotionDatabaseURL(const QString& url);
    void updateNotionMeetingIDPropertyName(const QString& name);
    void updateNotionParticipantsPropertyName(const QString& name);
    void updateNotionSummaryPropertyName(const QString& name);
    void setDatabaseTitle(const QString& title);
    void setDatabaseProperties(const std::map<QString, QString>& typesByName);

    // The page last made for a meeting in a database, if any. A page without a URL has an empty one.
    [[nodiscard]] std::optional<NotionPageMatch> rememberedPage(const QString& databaseID,
                                                                const QString& meetingID) const;
    void rememberPage(const QString& databaseID, const QString& meetingID, const NotionPageMatch& page);

    void setHasToken(bool has);
    void setIsFetching(bool fetching);
    void setIsSyncing(bool syncing);
    void setSelectedPageURL(const QString& url);
    void setPendingPages(std::vector<NotionPageMatch> pages);
    // Shows a message for four seconds, in place of the one before.
    enum class ToastKind { success, failure };
    void showToast(const QString& message, ToastKind kind);

Q_SIGNALS:
    void hasNotionTokenChanged();
    void settingsChanged();
    void notionDatabasePropertiesChanged();
    void isFetchingNotionDatabaseChanged();
    void isSyncingNotionChanged();
    void selectedNotionPageURLChanged();
    void notionToastChanged();
    void pendingNotionReplacementPagesChanged();

private:
    void update(QString& field, const QString& value, const char* name, const QString& key);
    void setToast(std::optional<NotionToast> toast);

    std::shared_ptr<UserDefaults> m_defaults;
    bool m_hasToken = false;
    QString m_databaseURL;
    QString m_databaseTitle;
    QString m_meetingIDProperty;
    QString m_participantsProperty;
    QString m_summaryProperty;
    std::vector<NotionPropertyOption> m_properties;
    bool m_isFetching = false;
    bool m_isSyncing = false;
    QString m_selectedPageURL;
    std::optional<NotionToast> m_toast;
    std::vector<NotionPageMatch> m_pendingPages;
};

} // namespace corvane
