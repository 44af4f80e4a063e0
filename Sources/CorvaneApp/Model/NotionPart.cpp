#include "CorvaneApp/Model/NotionPart.h"

#include "CorvaneCore/Settings/DefaultsKeys.h"

#include <QCollator>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

namespace {

QString pageKey(const QString& databaseID, const QString& meetingID) {
    return QStringLiteral("notionPage.%1.%2").arg(databaseID, meetingID);
}

QString pageURLKey(const QString& databaseID, const QString& meetingID) {
    return QStringLiteral("notionPageURL.%1.%2").arg(databaseID, meetingID);
}

} // namespace

NotionPart::NotionPart(std::shared_ptr<UserDefaults> defaults, QObject* parent)
    : ModelPart(parent), m_defaults(std::move(defaults)) {}

void NotionPart::loadSettings() {
    const auto load = [this](QString& field, const char* name, const QString& key) {
        if (const auto value = m_defaults->string(key))
            publish(field, *value, name, &NotionPart::settingsChanged);
    };
    load(m_databaseURL, "notionDatabaseURL", defaultsKeys::notionDatabaseURL);
    load(m_databaseTitle, "notionDatabaseTitle", defaultsKeys::notionDatabaseTitle);
    load(m_meetingIDProperty, "notionMeetingIDPropertyName", defaultsKeys::notionMeetingIDPropertyName);
    load(m_participantsProperty, "notionParticipantsPropertyName", defaultsKeys::notionParticipantsPropertyName);
    load(m_summaryProperty, "notionSummaryPropertyName", defaultsKeys::notionSummaryPropertyName);
}

void NotionPart::update(QString& field, const QString& value, const char* name, const QString& key) {
    m_defaults->set(key, value);
    publish(field, value, name, &NotionPart::settingsChanged);
}

void NotionPart::updateNotionDatabaseURL(const QString& url) {
    update(m_databaseURL, url, "notionDatabaseURL", defaultsKeys::notionDatabaseURL);
    publish(m_databaseTitle, QString(), "notionDatabaseTitle", &NotionPart::settingsChanged);
    setDatabaseProperties({});
    m_defaults->remove(defaultsKeys::notionDatabaseTitle);
}

void NotionPart::updateNotionMeetingIDPropertyName(const QString& name) {
    update(m_meetingIDProperty, name, "notionMeetingIDPropertyName", defaultsKeys::notionMeetingIDPropertyName);
}

void NotionPart::updateNotionParticipantsPropertyName(const QString& name) {
    update(m_participantsProperty, name, "notionParticipantsPropertyName",
           defaultsKeys::notionParticipantsPropertyName);
}

void NotionPart::updateNotionSummaryPropertyName(const QString& name) {
    update(m_summaryProperty, name, "notionSummaryPropertyName", defaultsKeys::notionSummaryPropertyName);
}

void NotionPart::setDatabaseTitle(const QString& title) {
    update(m_databaseTitle, title, "notionDatabaseTitle", defaultsKeys::notionDatabaseTitle);
}

void NotionPart::setDatabaseProperties(const std::map<QString, QString>& typesByName) {
    std::vector<NotionPropertyOption> properties;
    properties.reserve(typesByName.size());
    for (const auto& [name, type] : typesByName)
        properties.push_back({name, type});
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(properties.begin(), properties.end(),
                     [&](const auto& one, const auto& other) { return collator.compare(one.name, other.name) < 0; });
    publish(m_properties, std::move(properties), "notionDatabaseProperties",
            &NotionPart::notionDatabasePropertiesChanged);
}

std::optional<NotionPageMatch> NotionPart::rememberedPage(const QString& databaseID, const QString& meetingID) const {
    const auto id = m_defaults->string(pageKey(databaseID, meetingID));
    if (!id || id->isEmpty()) // the service may have made a page without naming it
        return std::nullopt;
    return NotionPageMatch{
        .id = *id, .title = {}, .url = m_defaults->string(pageURLKey(databaseID, meetingID)).value_or(QString())};
}

void NotionPart::rememberPage(const QString& databaseID, const QString& meetingID, const NotionPageMatch& page) {
    m_defaults->set(pageKey(databaseID, meetingID), page.id);
    m_defaults->set(pageURLKey(databaseID, meetingID), page.url);
}

void NotionPart::setHasToken(bool has) {
    publish(m_hasToken, has, "hasNotionToken", &NotionPart::hasNotionTokenChanged);
}

void NotionPart::setIsFetching(bool fetching) {
    publish(m_isFetching, fetching, "isFetchingNotionDatabase", &NotionPart::isFetchingNotionDatabaseChanged);
}

void NotionPart::setIsSyncing(bool syncing) {
    publish(m_isSyncing, syncing, "isSyncingNotion", &NotionPart::isSyncingNotionChanged);
}

void NotionPart::setSelectedPageURL(const QString& url) {
    publish(m_selectedPageURL, url, "selectedNotionPageURL", &NotionPart::selectedNotionPageURLChanged);
}

void NotionPart::setPendingPages(std::vector<NotionPageMatch> pages) {
    publish(m_pendingPages, std::move(pages), "pendingNotionReplacementPages",
            &NotionPart::pendingNotionReplacementPagesChanged);
}

void NotionPart::showToast(const QString& message, ToastKind kind) {
    const QUuid id = QUuid::createUuid();
    setToast(NotionToast{.id = id, .message = message, .isError = kind == ToastKind::failure});
    // A newer toast has an id of its own and keeps its whole time.
    QTimer::singleShot(4s, Qt::PreciseTimer, this, [this, id] {
        if (m_toast && m_toast->id == id)
            setToast(std::nullopt);
    });
}

void NotionPart::setToast(std::optional<NotionToast> toast) {
    publish(m_toast, std::move(toast), "notionToast", &NotionPart::notionToastChanged);
}

} // namespace corvane
