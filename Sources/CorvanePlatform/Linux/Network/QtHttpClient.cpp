#include "CorvanePlatform/Linux/Network/QtHttpClient.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Network/HttpExchange.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxy>

#include <algorithm>

namespace corvane {

namespace {

// A line end within a header would begin another header, or the body; no other control character may stand there.
bool isPlain(const QByteArray& text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return (c >= '\0' && c < ' ' && c != '\t') || c == '\x7f'; });
}

bool isUsable(const HttpRequest& request) {
    return request.url.isValid() && !request.url.host().isEmpty() &&
           (request.url.scheme() == u"https" || request.url.scheme() == u"http") &&
           std::all_of(request.headers.begin(), request.headers.end(),
                       [](const HttpHeader& one) { return isPlain(one.name) && isPlain(one.value); });
}

// Under a name that is reserved for never existing (RFC 6761); no name server has to hear of it.
bool isNowhere(const QUrl& url) {
    const QString host = url.host();
    return host == u"invalid" || host.endsWith(u".invalid");
}

QFuture<Outcome<HttpAnswer>> refused(HttpError::Kind kind, const QString& text) {
    return QtFuture::makeReadyFuture(Outcome<HttpAnswer>(std::make_exception_ptr(HttpError(kind, text))));
}

// The system's proxies, but for this machine itself: a proxy elsewhere would answer for another one.
class ProxiesBeyondThisMachine final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        const QString host = query.peerHostName();
        if (host == u"localhost" || QHostAddress(host).isLoopback())
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

} // namespace

QtHttpClient::QtHttpClient() = default;

QtHttpClient::~QtHttpClient() {
    if (m_network)
        HttpExchange::endAll(*m_network);
}

QFuture<Outcome<HttpAnswer>> QtHttpClient::send(const HttpRequest& request) {
    if (!isUsable(request))
        return refused(HttpError::Kind::unusableRequest, UserText::tr("The address or a header cannot be used."));
    if (isNowhere(request.url))
        return refused(HttpError::Kind::connection, UserText::tr("Host %1 not found").arg(request.url.host()));
    if (!m_network) {
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setProxyFactory(new ProxiesBeyondThisMachine); // owned by the manager
    }
    return HttpExchange::start(*m_network, request);
}

} // namespace corvane
