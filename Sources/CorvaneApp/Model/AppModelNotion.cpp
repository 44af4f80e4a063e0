// Publishing the shown meeting to Notion. All waits are for the network or the token store, beside the main loop; what
// is published is what was on screen when the user asked.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Notion/NotionClient.h"
#include "CorvaneCore/Notion/NotionError.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"

#include <algorithm>

namespace corvane {

namespace {

// The token, or what kept the store from giving it.
QFuture<Outcome<QString>> readToken(const std::shared_ptr<SecretStoring>& store) {
    return inBackground([store] { return outcomeOf([&] { return store->readNotionToken().value_or(QString()); }); });
}

// Why there is no token to go on with. Nothing if there is one. A store that could not be read is not taken for an
// empty one: the token that the user stored in it may well be there.
std::optional<QString> missingTokenReason(const Outcome<QString>& token) {
    try {
        return token.value().isEmpty() ? std::optional(UserText::tr("Connect Notion first")) : std::nullopt;
    } catch (const Error& error) {
        return UserText::tr("Failed to read Notion token: %1").arg(error.text());
    }
}

// The column that a user chose, if any. Throws NotionError.
std::optional<NotionPropertyInfo> mappedColumn(const NotionDatabaseInfo& database, const QString& mapped) {
    const QString name = mapped.trimmed();
    if (name.isEmpty())
        return std::nullopt;
    auto property = database.property(name);
    if (!property)
        throw NotionError::missingMappedProperty(name);
    return property;
}

std::optional<NotionPropertyInfo> mappedTextColumn(const NotionDatabaseInfo& database, const QString& mapped) {
    auto property = mappedColumn(database, mapped);
    if (property && property->type != QLatin1String("rich_text"))
        throw NotionError::unsupportedMappedProperty(property->name, property->type);
    return property;
}

QString requiredDatabaseID(const QString& url) {
    auto id = notionDatabaseID(url);
    if (!id)
        throw NotionError::invalidDatabaseURL();
    return *std::move(id);
}

} // namespace

// A meeting on its way, as it was when the user asked.
struct AppModel::NotionSync {
    NotionMeeting content;
    WhenPageExists whenPageExists = WhenPageExists::ask;
    QString databaseID;
    std::optional<NotionClient> client;
    std::vector<NotionPageMatch> pages; // found, and archived one after the other
    std::size_t archived = 0;
    QPromise<bool> done;
};

QFuture<bool> AppModel::refreshNotionSettings() {
    m_notion.loadSettings();
    // Absent also where the store cannot say; the store is asked again when a token is needed.
    return inBackground([store = m_services.tokenStore] {
               try {
                   return store->hasNotionToken();
               } catch (const Error&) {
                   return false;
               }
           })
        .then(this, [this](bool has) {
            m_notion.setHasToken(has);
            return has;
        });
}

QFuture<bool> AppModel::saveNotionToken(const QString& token) {
    return changeNotionToken(UserText::tr("Failed to save Notion token: %1"),
                             [token](SecretStoring& store) { store.saveNotionToken(token); });
}

QFuture<bool> AppModel::deleteNotionToken() {
    return changeNotionToken(UserText::tr("Failed to remove Notion token: %1"),
                             [](SecretStoring& store) { store.deleteNotionToken(); });
}

QFuture<bool> AppModel::changeNotionToken(const QString& failure, const std::function<void(SecretStoring&)>& change) {
    return inBackground([store = m_services.tokenStore, change] {
               return outcomeOf([&] {
                   change(*store);
                   return store->hasNotionToken();
               });
           })
        .then(this, [this, failure](const Outcome<bool>& hasToken) {
            try {
                const bool has = hasToken.value();
                m_notion.loadSettings();
                m_notion.setHasToken(has);
                say(has ? UserText::tr("Notion connected") : UserText::tr("Notion disconnected"));
                return true;
            } catch (const Error& error) {
                say(failure.arg(error.text()));
                return false;
            }
        });
}

void AppModel::updateNotionDatabaseURL(const QString& url) {
    m_notion.updateNotionDatabaseURL(url);
    refreshSelectedNotionPageURL();
}

QFuture<bool> AppModel::fetchNotionDatabaseTitle() {
    if (m_notion.notionDatabaseURL().trimmed().isEmpty()) {
        say(UserText::tr("Enter a Notion database URL"));
        return QtFuture::makeReadyFuture(false);
    }
    m_notion.setIsFetching(true); // reading the token takes time too
    return readToken(m_services.tokenStore)
        .then(this,
              [this](const Outcome<QString>& token) {
                  if (const auto reason = missingTokenReason(token)) {
                      m_notion.setIsFetching(false);
                      say(*reason);
                      return QtFuture::makeReadyFuture(false);
                  }
                  return fetchNotionDatabase(token.value());
              })
        .unwrap();
}

QFuture<bool> AppModel::fetchNotionDatabase(const QString& token) {
    say(UserText::tr("Fetching Notion database"));
    const auto fail = [this](const Error& error) {
        m_notion.setIsFetching(false);
        say(UserText::tr("Failed to fetch Notion database: %1").arg(error.text()));
    };
    const auto id = notionDatabaseID(m_notion.notionDatabaseURL());
    if (!id) {
        fail(NotionError::invalidDatabaseURL());
        return QtFuture::makeReadyFuture(false);
    }
    return notionClient(token).fetchDatabase(*id).then(this, [this, fail](const Outcome<NotionDatabaseInfo>& outcome) {
        try {
            takeNotionDatabase(outcome.value());
        } catch (const Error& error) {
            fail(error);
            return false;
        }
        m_notion.setIsFetching(false);
        say(UserText::tr("Notion database ready"));
        return true;
    });
}

// Columns that the user chose stay; only blank choices are filled.
void AppModel::takeNotionDatabase(const NotionDatabaseInfo& database) {
    m_notion.setDatabaseTitle(database.title);
    m_notion.setDatabaseProperties(database.propertyTypes);
    const auto isBlank = [](const QString& name) { return name.trimmed().isEmpty(); };
    if (const auto name = database.meetingIDProperty; name && isBlank(m_notion.notionMeetingIDPropertyName()))
        m_notion.updateNotionMeetingIDPropertyName(*name);
    if (const auto name = database.inferredParticipantsPropertyName();
        name && isBlank(m_notion.notionParticipantsPropertyName()))
        m_notion.updateNotionParticipantsPropertyName(*name);
    if (const auto name = database.inferredSummaryPropertyName(); name && isBlank(m_notion.notionSummaryPropertyName()))
        m_notion.updateNotionSummaryPropertyName(*name);
}

NotionClient AppModel::notionClient(const QString& token) {
    const auto elsewhere = m_services.defaults->string(defaultsKeys::notionServiceURL);
    return {*m_services.http, *this, token, elsewhere ? QUrl(*elsewhere) : notionServiceURL()};
}

QFuture<bool> AppModel::syncSelectedMeetingToNotion(WhenPageExists whenPageExists) {
    const auto meeting = selectedMeeting();
    if (!meeting)
        return QtFuture::makeReadyFuture(false);
    const auto& result = m_detail.transcriptResult();
    if (!result) {
        refuseNotionSync(UserText::tr("No transcript to sync"));
        return QtFuture::makeReadyFuture(false);
    }
    const auto sync = std::make_shared<NotionSync>();
    sync->content.meetingID = meeting->id;
    sync->content.title = m_detail.selectedTitle().isEmpty() ? meeting->title : m_detail.selectedTitle();
    sync->content.result = *result;
    sync->content.speakerNames = m_speakerReview.speakerMappings();
    sync->whenPageExists = whenPageExists;
    sync->done.start();
    m_notion.setIsSyncing(true); // reading the token takes time too, in which the button must not be pressed again
    readToken(m_services.tokenStore).then(this, [this, sync](const Outcome<QString>& token) {
        beginNotionSync(sync, token);
    });
    return sync->done.future();
}

void AppModel::refuseNotionSync(const QString& reason) {
    say(reason);
    m_notion.showToast(reason, NotionPart::ToastKind::failure);
}

void AppModel::endNotionSync(const std::shared_ptr<NotionSync>& sync, bool done) {
    sync->done.addResult(done);
    sync->done.finish();
}

// Runs one step of a sync; whatever goes wrong in it ends the sync.
void AppModel::inNotionSync(const std::shared_ptr<NotionSync>& sync, const std::function<void()>& step) {
    try {
        step();
    } catch (const Error& error) {
        m_notion.setIsSyncing(false);
        refuseNotionSync(UserText::tr("Notion sync failed: %1").arg(error.text()));
        endNotionSync(sync, false);
    }
}

void AppModel::beginNotionSync(const std::shared_ptr<NotionSync>& sync, const Outcome<QString>& token) {
    auto obstacle = missingTokenReason(token);
    if (!obstacle && m_notion.notionDatabaseURL().trimmed().isEmpty())
        obstacle = UserText::tr("Choose a Notion database");
    if (obstacle) {
        m_notion.setIsSyncing(false);
        refuseNotionSync(*obstacle);
        endNotionSync(sync, false);
        return;
    }
    say(UserText::tr("Syncing to Notion"));
    inNotionSync(sync, [&] {
        sync->client = notionClient(token.value());
        sync->databaseID = requiredDatabaseID(m_notion.notionDatabaseURL());
        sync->client->fetchDatabase(sync->databaseID)
            .then(this, [this, sync](const Outcome<NotionDatabaseInfo>& outcome) {
                inNotionSync(sync, [&] { findNotionPages(sync, outcome.value()); });
            });
    });
}

void AppModel::findNotionPages(const std::shared_ptr<NotionSync>& sync, const NotionDatabaseInfo& database) {
    m_notion.setDatabaseProperties(database.propertyTypes);
    NotionMeeting& content = sync->content;
    content.titleProperty = database.titleProperty;
    content.meetingIDProperty = mappedTextColumn(database, m_notion.notionMeetingIDPropertyName());
    content.participantsProperty = mappedColumn(database, m_notion.notionParticipantsPropertyName());
    content.summaryProperty = mappedTextColumn(database, m_notion.notionSummaryPropertyName());
    const auto column =
        content.meetingIDProperty ? std::optional(content.meetingIDProperty->name) : std::optional<QString>();
    sync->client->findPages(sync->databaseID, sync->content.meetingID, column)
        .then(this, [this, sync](const Outcome<std::vector<NotionPageMatch>>& outcome) {
            inNotionSync(sync, [&] {
                sync->pages = outcome.value();
                decideOnNotionPages(sync);
            });
        });
}

void AppModel::decideOnNotionPages(const std::shared_ptr<NotionSync>& sync) {
    // The search may not see the page of an earlier sync.
    const auto remembered = m_notion.rememberedPage(sync->databaseID, sync->content.meetingID);
    if (remembered && std::none_of(sync->pages.begin(), sync->pages.end(),
                                   [&](const NotionPageMatch& page) { return page.id == remembered->id; }))
        sync->pages.push_back({.id = remembered->id, .title = UserText::tr("Existing synced page"), .url = {}});
    if (sync->pages.empty() || sync->whenPageExists == WhenPageExists::createNew) {
        createNotionPage(sync);
    } else if (sync->whenPageExists == WhenPageExists::replace) {
        archiveNextNotionPage(sync);
    } else {
        m_notion.setPendingPages(sync->pages);
        m_notion.setIsSyncing(false);
        say(UserText::tr("Notion page already exists"));
        endNotionSync(sync, false);
    }
}

void AppModel::archiveNextNotionPage(const std::shared_ptr<NotionSync>& sync) {
    if (sync->archived == sync->pages.size()) {
        createNotionPage(sync);
        return;
    }
    const QString id = sync->pages[sync->archived++].id;
    sync->client->request(QStringLiteral("/pages/") + id, "PATCH", QJsonObject{{QStringLiteral("archived"), true}})
        .then(this, [this, sync](const Outcome<JSONValue::Object>& outcome) {
            inNotionSync(sync, [&] {
                static_cast<void>(outcome.value());
                archiveNextNotionPage(sync);
            });
        });
}

void AppModel::createNotionPage(const std::shared_ptr<NotionSync>& sync) {
    sync->client->createMeetingPage(sync->databaseID, sync->content)
        .then(this, [this, sync](const Outcome<NotionPageMatch>& outcome) {
            inNotionSync(sync, [&] {
                const NotionPageMatch& page = outcome.value();
                m_notion.rememberPage(sync->databaseID, sync->content.meetingID, page);
                m_notion.setSelectedPageURL(page.url);
                m_notion.setPendingPages({});
                m_notion.setIsSyncing(false);
                say(UserText::tr("Synced to Notion"));
                m_notion.showToast(UserText::tr("Synced to Notion"), NotionPart::ToastKind::success);
                endNotionSync(sync, true);
            });
        });
}

void AppModel::refreshSelectedNotionPageURL() {
    const auto meeting = selectedMeeting();
    const auto databaseID = notionDatabaseID(m_notion.notionDatabaseURL());
    const auto page = meeting && databaseID ? m_notion.rememberedPage(*databaseID, meeting->id) : std::nullopt;
    if (!page)
        m_notion.setSelectedPageURL({});
    else
        m_notion.setSelectedPageURL(page->url.isEmpty() ? notionPageURL(page->id) : page->url);
}

bool AppModel::openSelectedNotionPage() {
    const QString& url = m_notion.selectedNotionPageURL();
    return !url.isEmpty() && QUrl(url).isValid() && m_services.workspace->open(url);
}

} // namespace corvane
