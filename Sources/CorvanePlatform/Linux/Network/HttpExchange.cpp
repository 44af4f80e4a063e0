#include "CorvanePlatform/Linux/Network/HttpExchange.h"

#include "CorvaneContract/Text/UserText.h"

#include <QIODevice>
#include <QNetworkAccessManager>

#include <algorithm>
#include <cstring>
#include <memory>

namespace corvane {

namespace {

constexpr int deadlineFactor = 10;

using Kind = HttpError::Kind;

// A body that can be sent only once. The network library repeats a request whose connection is closed before the
// answer begins, unless it cannot go back to the start of the body; and what was asked for may be done already.
class OneTimeBody final : public QIODevice {
public:
    explicit OneTimeBody(QByteArray content) : m_content(std::move(content)) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] qint64 size() const override { return m_content.size(); }
    [[nodiscard]] bool atEnd() const override { return pos() >= size(); }
    bool seek(qint64 position) override { return position >= pos() && QIODevice::seek(position); }
    bool reset() override { return false; }

protected:
    qint64 readData(char* data, qint64 maximum) override {
        const qint64 count = std::min(maximum, size() - pos());
        if (count <= 0)
            return -1;
        std::memcpy(data, m_content.constData() + pos(), static_cast<std::size_t>(count));
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
};

QNetworkRequest::RedirectPolicy redirectPolicy(const HttpRequest& request) {
    if (request.method != "GET" || request.body)
        return QNetworkRequest::ManualRedirectPolicy;
    return request.redirects == HttpRedirects::sameOrigin ? QNetworkRequest::SameOriginRedirectPolicy
                                                          : QNetworkRequest::NoLessSafeRedirectPolicy;
}

QNetworkRequest networkRequest(const HttpRequest& request) {
    QNetworkRequest result(request.url);
    result.setRawHeader("User-Agent", "Corvane");
    for (const HttpHeader& header : request.headers)
        result.setRawHeader(header.name, header.value);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, redirectPolicy(request));
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        result.setAttribute(attribute, QNetworkRequest::Manual);
    // A second version of the protocol has rules of its own for repeating a request.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return result;
}

QNetworkReply* sendOver(QNetworkAccessManager& network, const HttpRequest& request) {
    QNetworkRequest wire = networkRequest(request);
    if (!request.body)
        return network.sendCustomRequest(wire, request.method);
    wire.setHeader(QNetworkRequest::ContentLengthHeader, request.body->size());
    auto body = std::make_unique<OneTimeBody>(*request.body);
    QNetworkReply* reply = network.sendCustomRequest(wire, request.method, body.get());
    body.release()->setParent(reply);
    return reply;
}

// The library also takes for an error what is an answer of the server with a status that tells of failure. With a
// status of success it means what it says: the content could not be unpacked, for one.
bool isAnswer(QNetworkReply::NetworkError error, int status) {
    return error == QNetworkReply::NoError ||
           (status >= 400 && error > QNetworkReply::UnknownProxyError && error != QNetworkReply::ProtocolFailure &&
            error != QNetworkReply::ContentReSendError);
}

QString failureText(const QNetworkReply& reply) {
    // Only a lost connection would make it send a body again.
    if (reply.error() == QNetworkReply::ContentReSendError)
        return UserText::tr("Connection closed");
    return reply.errorString();
}

Kind kindOf(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
        return Kind::tls;
    case QNetworkReply::TimeoutError:
        return Kind::timedOut;
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::TooManyRedirectsError:
        return Kind::redirected;
    default:
        return Kind::connection;
    }
}

} // namespace

QFuture<Outcome<HttpAnswer>> HttpExchange::start(QNetworkAccessManager& network, const HttpRequest& request) {
    auto* exchange = new HttpExchange(network, request); // owned by the manager
    return exchange->m_promise.future();
}

void HttpExchange::endAll(QNetworkAccessManager& network) {
    qDeleteAll(network.findChildren<HttpExchange*>(Qt::FindDirectChildrenOnly));
}

HttpExchange::HttpExchange(QNetworkAccessManager& network, const HttpRequest& request)
    : QObject(&network), m_reply(sendOver(network, request)), m_maximumBytes(request.maximumAnswerBytes) {
    m_promise.start();
    m_watcher.setFuture(m_promise.future());
    m_stillness.setInterval(request.timeout);
    m_deadline.setInterval(request.timeout * deadlineFactor);
    watch();
}

HttpExchange::~HttpExchange() {
    detach();
}

void HttpExchange::watch() {
    const auto moved = [this] { m_stillness.start(); };
    const auto timedOut = [this] { fail(Kind::timedOut, UserText::tr("The request timed out.")); };
    for (QTimer* timer : {&m_stillness, &m_deadline}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, timedOut);
        timer->start();
    }
    connect(m_reply, &QNetworkReply::uploadProgress, this, moved);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, moved);
    connect(m_reply, &QNetworkReply::readyRead, this, [this, moved] {
        moved();
        readMore();
    });
    connect(m_reply, &QNetworkReply::finished, this, &HttpExchange::replyFinished);
    connect(&m_watcher, &QFutureWatcherBase::canceled, this, [this] {
        detach();
        deleteLater();
    });
}

void HttpExchange::readMore() {
    const qint64 announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (std::max(announced, m_body.size() + m_reply->bytesAvailable()) > m_maximumBytes)
        fail(Kind::tooLarge, UserText::tr("The answer is larger than %1 MB.").arg(m_maximumBytes / (1024 * 1024)));
    else
        m_body += m_reply->readAll();
}

void HttpExchange::replyFinished() {
    const auto error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool isRedirect = status >= 300 && status < 400;
    const bool leadsSomewhere = m_reply->hasRawHeader("Location");
    // The library finds that it cannot send the body of a request again only after it was told to go elsewhere.
    if (isRedirect && leadsSomewhere) {
        fail(Kind::redirected, UserText::tr("The server redirects to another address, which is not followed."));
        return;
    }
    // The library takes a redirect to nowhere for one to a protocol that it does not know.
    const bool leadsNowhere = isRedirect && error == QNetworkReply::ProtocolUnknownError;
    if (!leadsNowhere && !isAnswer(error, status)) {
        fail(kindOf(error), failureText(*m_reply));
        return;
    }
    readMore();
    if (m_reply)
        finish(answer());
}

HttpAnswer HttpExchange::answer() const {
    HttpAnswer result;
    result.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    for (const auto& [name, value] : m_reply->rawHeaderPairs())
        result.headers.push_back({name, value});
    result.body = m_body;
    return result;
}

void HttpExchange::fail(Kind kind, const QString& text) {
    finish(std::make_exception_ptr(HttpError(kind, text)));
}

void HttpExchange::finish(const Outcome<HttpAnswer>& outcome) {
    detach();
    deleteLater();
    // Last, and without this object: what continues here may end the client.
    auto promise = std::move(m_promise);
    promise.addResult(outcome);
    promise.finish();
}

void HttpExchange::detach() {
    m_stillness.stop();
    m_deadline.stop();
    m_watcher.disconnect(this);
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->abort();
    m_reply->deleteLater();
    m_reply = nullptr;
}

} // namespace corvane
