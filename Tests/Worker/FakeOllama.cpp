#include "Worker/FakeOllama.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>
#include <stdexcept>

namespace corvane::test {

namespace {

QByteArray object(const QString& words, bool done) {
    return compactJson({{QStringLiteral("model"), QStringLiteral("qwen3:1.7b")},
                        {QStringLiteral("message"), QJsonObject{{QStringLiteral("role"), QStringLiteral("assistant")},
                                                                {QStringLiteral("content"), words}}},
                        {QStringLiteral("done"), done}}) +
           '\n';
}

QByteArray error(const char* text) {
    return compactJson({{QStringLiteral("error"), QString::fromUtf8(text)}}) + '\n';
}

QByteArray streamed(const QString& words) {
    constexpr qsizetype pieceCharacters = 7;
    QByteArray stream;
    for (qsizetype start = 0; start < words.size(); start += pieceCharacters)
        stream += object(words.mid(start, pieceCharacters), false);
    return stream;
}

QByteArray answer(const char* status, const QByteArray& body, const QByteArray& headers = {}) {
    return QByteArray("HTTP/1.1 ") + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
           headers + "\r\n" + body;
}

QByteArray multiline(const QString& words) {
    const JsonDocument document(object(words, true));
    return prettyJson(JSONValue(document.root().object().free()).toQJson().toObject());
}

// The head and the body once both are there.
std::optional<std::pair<QByteArray, QByteArray>> wholeRequest(const QByteArray& bytes) {
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    const QByteArray head = bytes.first(end);
    const qsizetype field = head.toLower().indexOf("content-length:");
    const qsizetype length = field < 0 ? 0 : head.mid(field + 15).split('\r').first().trimmed().toLongLong();
    if (bytes.size() < end + 4 + length)
        return std::nullopt;
    return std::pair(head, bytes.mid(end + 4, length));
}

} // namespace

FakeOllama::FakeOllama() : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 8) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0 || ::pipe(m_wake) != 0)
        throw std::runtime_error("no socket for a fake Ollama");
    m_port = ntohs(address.sin_port);
    m_welcomer = std::thread([this] { welcome(); });
}

FakeOllama::~FakeOllama() {
    ::close(m_wake[1]); // wakes every thread
    m_welcomer.join();
    for (std::thread& server : m_servers)
        server.join();
    ::close(m_wake[0]);
    ::close(m_listener);
}

QString FakeOllama::endpoint() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

void FakeOllama::say(const QString& words, Manner manner) {
    const std::lock_guard lock(m_mutex);
    m_turns.push_back({words, manner});
}

std::vector<FakeOllama::Request> FakeOllama::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

Turn FakeOllama::nextTurn() {
    const std::lock_guard lock(m_mutex);
    if (!m_turns.empty()) {
        m_last = m_turns.front();
        m_turns.pop_front();
    }
    return m_last;
}

void FakeOllama::welcome() {
    for (;;) {
        pollfd ends[] = {{m_listener, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        ::poll(ends, 2, -1);
        if (ends[1].revents != 0)
            return;
        const int connection = ::accept(m_listener, nullptr, nullptr);
        if (connection >= 0)
            m_servers.emplace_back([this, connection] { serve(connection); });
    }
}

void FakeOllama::serve(int connection) {
    QByteArray bytes;
    for (;;) {
        pollfd ends[] = {{connection, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        ::poll(ends, 2, -1);
        char block[4096];
        const ssize_t length = ends[1].revents != 0 ? 0 : ::recv(connection, block, sizeof block, 0);
        if (length <= 0)
            break;
        bytes.append(block, length);
        if (const auto whole = wholeRequest(bytes)) {
            const JsonDocument document(whole->second.isEmpty() ? QByteArray("{}") : whole->second);
            const Request request{whole->first.split(' ').value(1), document.root().object().free()};
            {
                const std::lock_guard lock(m_mutex);
                m_requests.push_back(request);
            }
            beforeAnswer();
            perform(connection, nextTurn(), request);
            break;
        }
    }
    ::close(connection);
}

void FakeOllama::perform(int connection, const Turn& turn, const Request& request) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Type: application/x-ndjson\r\nConnection: close\r\n\r\n";
    const QByteArray stream = streamed(turn.words);
    const QByteArray end = object({}, true);
    const QByteArray promised = answer("200 OK", stream + end);
    if (!models.contains(stringAt(request.body, QStringLiteral("model")).value_or(QString()))) {
        send(connection, answer("404 Not Found", error("model not found, try pulling it first")));
        return;
    }
    switch (turn.manner) {
    case Manner::refuseThink:
        if (request.body.contains(QStringLiteral("think"))) {
            send(connection, answer("400 Bad Request", error("the model does not support thinking")));
            return;
        }
        [[fallthrough]];
    case Manner::stream:
        send(connection, head + stream + end);
        return;
    case Manner::single:
        send(connection, answer("200 OK", multiline(turn.words)));
        return;
    case Manner::trickle:
        send(connection, head);
        while (send(connection, " ")) {
            pollfd wake{m_wake[0], POLLIN, 0};
            if (::poll(&wake, 1, 20) != 0)
                return;
        }
        return;
    case Manner::stall:
        send(connection, head + stream.first(stream.size() / 2));
        wait(connection);
        return;
    case Manner::silent:
        wait(connection);
        return;
    case Manner::closeEarly:
        send(connection, promised.first(promised.size() / 2));
        return;
    case Manner::cutStream:
        send(connection, head + stream);
        return;
    case Manner::failMidway:
        send(connection, head + stream + error("llama runner process has terminated."));
        return;
    case Manner::serverError:
        send(connection, answer("500 Internal Server Error", error("out of memory.")));
        return;
    case Manner::redirect:
        send(connection, answer("302 Found", {}, "Location: " + endpoint().toUtf8() + "/elsewhere\r\n"));
        return;
    case Manner::flood:
        send(connection, head + QByteArray(30 * 1024 * 1024, 'x'));
        return;
    case Manner::endlessWords:
        send(connection, head);
        while (send(connection, object(QStringLiteral("and so on ").repeated(800), false))) {
        }
        return;
    case Manner::webPage:
        send(connection, answer("200 OK", "<html>\n<p>It works!\n</html>\n"));
        return;
    }
}

bool FakeOllama::send(int connection, const QByteArray& bytes) {
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t length =
            ::send(connection, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (length <= 0)
            return false;
        sent += length;
    }
    return true;
}

void FakeOllama::wait(int connection) {
    pollfd ends[] = {{connection, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
    ::poll(ends, 2, -1);
}

} // namespace corvane::test
