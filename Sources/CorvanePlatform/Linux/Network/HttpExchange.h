// One request and its answer over Qt's network library: what bounds it in time and size, and what becomes of it. Owned
// by the network access manager; deletes itself when it is over. The manager's thread.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"

#include <QFutureWatcher>
#include <QNetworkReply>
#include <QPromise>
#include <QTimer>

namespace corvane {

class HttpExchange final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static QFuture<Outcome<HttpAnswer>> start(QNetworkAccessManager& network, const HttpRequest& request);
    // Their futures are canceled.
    static void endAll(QNetworkAccessManager& network);

    ~HttpExchange() override;

private:
    HttpExchange(QNetworkAccessManager& network, const HttpRequest& request);

    void watch();
    void readMore();
    void replyFinished();
    [[nodiscard]] HttpAnswer answer() const;
    void fail(HttpError::Kind kind, const QString& text);
    void finish(const Outcome<HttpAnswer>& outcome);
    void detach();

    QPromise<Outcome<HttpAnswer>> m_promise;
    QFutureWatcher<Outcome<HttpAnswer>> m_watcher; // of the promise, for its cancellation
    QNetworkReply* m_reply;
    QByteArray m_body;
    QTimer m_stillness;
    QTimer m_deadline;
    qint64 m_maximumBytes;
};

} // namespace corvane
