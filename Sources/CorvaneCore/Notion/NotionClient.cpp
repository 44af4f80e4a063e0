#include "CorvaneCore/Notion/NotionClient.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Interfaces/HttpStatusText.h"
#include "CorvaneCore/Notion/NotionError.h"

namespace corvane {

namespace {

const QByteArray GET = QByteArrayLiteral("GET");
const QByteArray POST = QByteArrayLiteral("POST");
const QByteArray PATCH = QByteArrayLiteral("PATCH");

// Far more than fifty pages with all their columns take. What a hostile or broken server sends beyond it would keep the
// main loop busy for seconds.
constexpr qint64 maximumAnswerBytes = 8LL * 1024 * 1024;

// What the service says of a refusal goes to the status line and to terminals. The token does not, should a server
// quote it; but a word too short to be one may stand there by itself.
QString withoutToken(QString message, const QString& token) {
    constexpr qsizetype shortestToken = 8;
    return token.size() < shortestToken ? message : message.replace(token, QStringLiteral("(token)"));
}

QUrl appended(const QUrl& base, const QString& path) {
    QString start = base.path();
    while (start.endsWith(QLatin1Char('/')))
        start.chop(1);
    QUrl url = base;
    url.setPath(start + path);
    return url;
}

} // namespace

// A page on its way, and the blocks that it still lacks.
struct NotionClient::Publication {
    QPromise<Outcome<NotionPageMatch>> done;
    std::vector<QJsonArray> batches; // the first one goes with the page
    std::size_t next = 1;
    NotionPageMatch page;

    void finish(const Outcome<NotionPageMatch>& outcome) {
        done.addResult(outcome);
        done.finish();
    }
};

QFuture<Outcome<NotionDatabaseInfo>> NotionClient::fetchDatabase(const QString& id) const {
    return request(QStringLiteral("/databases/") + id, GET, std::nullopt)
        .then(m_context, [](const Outcome<JSONValue::Object>& answer) {
            return outcomeOf([&answer] { return notionDatabaseInfo(answer.value()); });
        });
}

QFuture<Outcome<std::vector<NotionPageMatch>>>
NotionClient::findPages(const QString& databaseID, const QString& meetingID,
                        const std::optional<QString>& meetingIDProperty) const {
    const auto mentioning = meetingIDProperty ? std::nullopt : std::optional(meetingID);
    return request(QStringLiteral("/databases/") + databaseID + QStringLiteral("/query"), POST,
                   notionQueryBody(meetingID, meetingIDProperty))
        .then(m_context, [mentioning](const Outcome<JSONValue::Object>& answer) {
            return outcomeOf([&] { return notionPageMatches(answer.value(), mentioning); });
        });
}

QFuture<Outcome<NotionPageMatch>> NotionClient::createMeetingPage(const QString& databaseID,
                                                                  const NotionMeeting& meeting) const {
    const auto publication = std::make_shared<Publication>();
    publication->done.start();
    auto future = publication->done.future();
    QJsonObject body;
    try {
        const QJsonObject properties = notionPageProperties(meeting);
        publication->batches = notionBatches(meetingBlocks(meeting.meetingID, meeting.result, meeting.speakerNames));
        body = notionPageBody(databaseID, properties, publication->batches.front());
    } catch (...) {
        publication->finish(std::current_exception());
        return future;
    }
    publication->page.title = notionPageTitle(meeting);
    request(QStringLiteral("/pages"), POST, body)
        .then(m_context, [client = *this, publication](const Outcome<JSONValue::Object>& answer) {
            try {
                const JSONValue::Object& page = answer.value();
                publication->page.id = stringAt(page, QStringLiteral("id")).value_or(QString());
                publication->page.url =
                    stringAt(page, QStringLiteral("url")).value_or(notionPageURL(publication->page.id));
            } catch (...) {
                publication->finish(std::current_exception());
                return;
            }
            client.appendNextBatch(publication);
        });
    return future;
}

void NotionClient::appendNextBatch(const std::shared_ptr<Publication>& publication) const {
    if (publication->next == publication->batches.size()) {
        publication->finish(publication->page);
        return;
    }
    const QJsonObject body{{QStringLiteral("children"), publication->batches[publication->next++]}};
    request(QStringLiteral("/blocks/") + publication->page.id + QStringLiteral("/children"), PATCH, body)
        .then(m_context, [client = *this, publication](const Outcome<JSONValue::Object>& answer) {
            try {
                static_cast<void>(answer.value());
            } catch (...) {
                publication->finish(std::current_exception());
                return;
            }
            client.appendNextBatch(publication);
        });
}

QFuture<Outcome<JSONValue::Object>> NotionClient::request(const QString& path, const QByteArray& method,
                                                          const std::optional<QJsonObject>& body) const {
    HttpRequest request{.method = method,
                        .url = appended(m_baseURL, path),
                        .headers = {{"Authorization", "Bearer " + m_token.toUtf8()},
                                    {"Notion-Version", "2022-06-28"},
                                    {"Content-Type", "application/json"}},
                        // Empty rather than absent: a request with a body is not repeated by the transport.
                        .body = body ? compactJson(*body) : QByteArray(),
                        .maximumAnswerBytes = maximumAnswerBytes};
    return m_http->send(request).then(m_context, [token = m_token](const Outcome<HttpAnswer>& answer) {
        return outcomeOf([&] {
            try {
                return notionAnswer(answer.value());
            } catch (const NotionError& error) {
                throw NotionError::requestFailed(withoutToken(error.text(), token));
            }
        });
    });
}

JSONValue::Object notionAnswer(const HttpAnswer& answer) {
    const JsonDocument document(answer.body);
    const JSONValue content = document.root().free();
    JSONValue::Object object = content.objectValue() ? *content.objectValue() : JSONValue::Object();
    if (answer.status < 200 || answer.status > 299)
        throw NotionError::requestFailed(
            stringAt(object, QStringLiteral("message")).value_or(httpStatusText(answer.status)));
    return object;
}

} // namespace corvane
