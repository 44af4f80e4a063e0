#include "CorvaneApp/Shell/SingleInstance.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace corvane {

namespace {

using namespace std::chrono_literals;

constexpr qint64 longestRequest = 1 << 20; // bytes; thousands of paths
constexpr auto requestPatience = 5s;
const QByteArray acceptance = QByteArrayLiteral("accepted\n");

// Short, as the path of a socket holds about a hundred bytes, and the same however the directory was written.
QString nameFor(const QString& dataDirectory) {
    const QString canonical = QFileInfo(dataDirectory).canonicalFilePath();
    const QByteArray path = (canonical.isEmpty() ? dataDirectory : canonical).toUtf8();
    return QStringLiteral("corvane-") +
           QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().left(16));
}

// Whether the process at the other end is of this user. Who else could reach the socket has no business here.
bool isOfThisUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
}

UniqueFd connectTo(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = QFile::encodeName(path);
    if (encoded.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return {};
    std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.get() < 0 || ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        !isOfThisUser(socket.get()))
        return {};
    return socket;
}

bool sendAll(int socket, const QByteArray& bytes) {
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(socket, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return false;
        sent += count > 0 ? count : 0;
    }
    return true;
}

bool isAccepted(int socket, std::chrono::milliseconds patience) {
    QByteArray answer;
    const auto end = std::chrono::steady_clock::now() + patience;
    while (answer.size() < acceptance.size()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        pollfd waiting{.fd = socket, .events = POLLIN, .revents = 0};
        if (left <= 0 || ::poll(&waiting, 1, static_cast<int>(left)) == 0)
            return false;
        char buffer[16];
        const ssize_t count = ::recv(socket, buffer, sizeof buffer, 0);
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        answer.append(buffer, count > 0 ? count : 0);
    }
    return answer == acceptance;
}

} // namespace

SingleInstance::SingleInstance(const QString& directory, const QString& dataDirectory)
    : m_path(directory.isEmpty() ? QString() : directory + QLatin1Char('/') + nameFor(dataDirectory)) {
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::takeConnection);
}

QString SingleInstance::runtimeDirectory() {
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

bool SingleInstance::claim() {
    if (m_path.isEmpty())
        return true;
    const QByteArray path = QFile::encodeName(m_path + QStringLiteral(".lock"));
    UniqueFd lock(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (lock.get() < 0)
        return true; // such as on a full disk: a recorder that does not start is worse than two of them
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    m_lock = std::move(lock);
    return true;
}

bool SingleInstance::handOver(const StartRequest& request, std::chrono::milliseconds patience) const {
    const UniqueFd socket = connectTo(m_path + QStringLiteral(".socket"));
    return socket.get() >= 0 && sendAll(socket.get(), encoded(request)) && isAccepted(socket.get(), patience);
}

bool SingleInstance::listen() {
    if (m_lock.get() < 0)
        return false;
    const QString socket = m_path + QStringLiteral(".socket");
    QFile::remove(socket); // of a process that was killed: this one holds the lock
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    return m_server.listen(socket);
}

void SingleInstance::close() {
    m_server.close();
}

void SingleInstance::takeConnection() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (!isOfThisUser(static_cast<int>(socket->socketDescriptor()))) {
            socket->abort();
            continue;
        }
        QTimer::singleShot(requestPatience, socket, &QLocalSocket::abort);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { takeRequest(*socket); });
        takeRequest(*socket);
    }
}

void SingleInstance::takeRequest(QLocalSocket& socket) {
    if (!socket.canReadLine()) {
        if (socket.bytesAvailable() > longestRequest)
            socket.abort();
        return;
    }
    const auto request = decodedStartRequest(socket.readLine());
    if (request) {
        Q_EMIT requested(*request);
        socket.write(acceptance);
    }
    socket.disconnectFromServer();
}

} // namespace corvane
