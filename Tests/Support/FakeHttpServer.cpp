#include "Support/FakeHttpServer.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Interfaces/HttpStatusText.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>
#include <QTimer>

#include <optional>
#include <stdexcept>

namespace corvane {

namespace {

const QByteArray endOfHead = QByteArrayLiteral("\r\n\r\n");

std::unique_ptr<QTcpServer> makeServer(FakeHttpServer::Transport transport) {
    if (transport == FakeHttpServer::Transport::plain)
        return std::make_unique<QTcpServer>();
    const auto pem = readFile(QStringLiteral(SELF_SIGNED_PEM)).value_or(QByteArray());
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(pem));
    configuration.setPrivateKey(QSslKey(pem, QSsl::Ec));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(configuration);
    return server;
}

// The first request in the bytes, if it is there as a whole; it is taken out.
std::optional<ReceivedRequest> takeRequest(QByteArray& unread) {
    const qsizetype headSize = unread.indexOf(endOfHead);
    if (headSize < 0)
        return std::nullopt;
    const QList<QByteArray> lines = unread.first(headSize).split('\n');
    ReceivedRequest request;
    const QList<QByteArray> first = lines.front().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray& line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.push_back({line.first(std::max<qsizetype>(colon, 0)), line.sliced(colon + 1).trimmed()});
    }
    const qsizetype bodyStart = headSize + endOfHead.size();
    const qsizetype bodySize = request.header("Content-Length").toLongLong();
    if (unread.size() < bodyStart + bodySize)
        return std::nullopt;
    request.body = unread.sliced(bodyStart, bodySize);
    unread.remove(0, bodyStart + bodySize);
    return request;
}

QByteArray onTheWire(const HttpAnswer& answer) {
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(answer.status) + ' ' +
                       httpStatusText(answer.status).toLatin1() +
                       "\r\nContent-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    for (const HttpHeader& one : answer.headers)
        bytes += one.name + ": " + one.value + "\r\n";
    return bytes + "\r\n" + answer.body;
}

// Writes one byte at each turn of the event loop.
void trickle(QTcpSocket& socket, const QByteArray& bytes) {
    auto* timer = new QTimer(&socket);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket, timer, bytes, next = qsizetype(0)]() mutable {
        if (next == bytes.size()) {
            timer->deleteLater();
            return;
        }
        socket.write(bytes.constData() + next++, 1);
        socket.flush();
    });
    timer->start(0);
}

} // namespace

FakeHttpServer::FakeHttpServer(Handler handler, Transport transport, quint16 port)
    : m_handler(std::move(handler)), m_transport(transport), m_server(makeServer(transport)) {
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(), [this] { welcome(); });
    if (!m_server->listen(QHostAddress::LocalHost, port))
        throw std::runtime_error(m_server->errorString().toStdString());
}

QUrl FakeHttpServer::address(const QString& path) const {
    const auto scheme = m_transport == Transport::plain ? QStringLiteral("http") : QStringLiteral("https");
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(m_server->serverPort()).arg(path));
}

std::vector<QByteArray> FakeHttpServer::calls() const {
    std::vector<QByteArray> result;
    for (const ReceivedRequest& request : m_requests)
        result.push_back(request.method + ' ' + request.target);
    return result;
}

qsizetype FakeHttpServer::connections() const {
    return m_server->findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly).size();
}

void FakeHttpServer::forget() {
    m_requests.clear();
    faults.clear();
    replacements.clear();
}

void FakeHttpServer::welcome() {
    while (QTcpSocket* socket = m_server->nextPendingConnection()) {
        const auto unread = std::make_shared<QByteArray>();
        const auto more = [this, socket, unread] { read(*socket, *unread); };
        QObject::connect(socket, &QTcpSocket::readyRead, m_server.get(), more);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        more();
    }
}

void FakeHttpServer::read(QTcpSocket& socket, QByteArray& unread) {
    unread += socket.readAll();
    while (const auto request = takeRequest(unread))
        respond(socket, *request);
}

void FakeHttpServer::respond(QTcpSocket& socket, const ReceivedRequest& request) {
    const std::size_t number = m_requests.size();
    m_requests.push_back(request);
    const auto replacement = replacements.find(number);
    const QByteArray bytes = onTheWire(replacement == replacements.end() ? m_handler(request) : replacement->second);
    const auto fault = faults.find(number);
    switch (fault == faults.end() ? Fault::none : fault->second) {
    case Fault::none:
        socket.write(bytes);
        break;
    case Fault::silent:
        break;
    case Fault::hangUp:
        socket.disconnectFromHost();
        break;
    case Fault::byteByByte:
        trickle(socket, bytes);
        break;
    case Fault::cutShort:
        socket.write(bytes.first(bytes.size() - bytes.size() / 4));
        socket.disconnectFromHost();
        break;
    }
}

} // namespace corvane
