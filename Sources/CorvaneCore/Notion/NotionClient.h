// All that Corvane knows of Notion's REST interface: describing a database, finding the pages of a meeting, publishing
// a meeting as a page. It keeps nothing between its operations and decides nothing about them.
//
// A value, made anew for each operation, on the main thread. Every operation returns at once; its outcome is the value
// or a NotionError (the service refused), an HttpError (no usable answer) or a JsonError (no JSON). Nothing is repeated
// and nothing undone. When `context` goes, what is under way ends after the present request and its future is canceled.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"
#include "CorvaneCore/Notion/NotionAddresses.h"
#include "CorvaneCore/Notion/NotionDatabase.h"
#include "CorvaneCore/Notion/NotionPage.h"

#include <QObject>
#include <QPromise>

#include <memory>

namespace corvane {

class NotionClient {
public:
    // `http` must outlive all operations, `context` is the object that asks. `token` is the user's integration token.
    NotionClient(HttpClient& http, QObject& context, QString token, QUrl baseURL = notionServiceURL())
        : m_http(&http), m_context(&context), m_token(std::move(token)), m_baseURL(std::move(baseURL)) {}

    [[nodiscard]] QFuture<Outcome<NotionDatabaseInfo>> fetchDatabase(const QString& id) const;

    // The pages whose column `meetingIDProperty` holds the meeting ID or, without a column, those that mention it in
    // any. Of the 50 pages that the service names first, and in its order.
    [[nodiscard]] QFuture<Outcome<std::vector<NotionPageMatch>>>
    findPages(const QString& databaseID, const QString& meetingID,
              const std::optional<QString>& meetingIDProperty) const;

    // Creates the page with the first blocks and appends the others, one request after the other. Columns that cannot
    // take the meeting fail it before anything is sent; a request that fails leaves behind what was sent before it.
    [[nodiscard]] QFuture<Outcome<NotionPageMatch>> createMeetingPage(const QString& databaseID,
                                                                      const NotionMeeting& meeting) const;

    // One exchange: `path` begins with a slash and is appended to the base address. The outcome is the JSON object of
    // the answer, empty if the answer is JSON of another kind.
    [[nodiscard]] QFuture<Outcome<JSONValue::Object>> request(const QString& path, const QByteArray& method,
                                                              const std::optional<QJsonObject>& body) const;

private:
    struct Publication;
    void appendNextBatch(const std::shared_ptr<Publication>& publication) const;

    HttpClient* m_http;
    QObject* m_context;
    QString m_token;
    QUrl m_baseURL;
};

// What request() makes of an answer. Throws JsonError if it is no JSON, whatever its status, and then NotionError for a
// status that does not stand for success.
[[nodiscard]] JSONValue::Object notionAnswer(const HttpAnswer& answer);

} // namespace corvane
