// An HTTP server on the loopback for tests and developers: it answers with a function of the request, behaves as badly
// as it is told to, and remembers to the letter what it received. On the thread that it was made on, by its event loop.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"

#include <QByteArray>
#include <QTcpServer>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace corvane {

struct ReceivedRequest {
    QByteArray method;
    QByteArray target; // as it stood in the request line
    std::vector<HttpHeader> headers;
    QByteArray body;

    [[nodiscard]] QByteArray header(const QByteArray& name) const {
        return HttpAnswer{.status = 0, .headers = headers, .body = {}}.header(name);
    }
};

// What happens to an answer on its way.
enum class Fault {
    none,
    silent,     // never comes
    hangUp,     // the connection is closed instead
    byteByByte, // comes in single bytes, a turn of the event loop each
    cutShort,   // ends in its middle
};

class FakeHttpServer {
public:
    using Handler = std::function<HttpAnswer(const ReceivedRequest&)>;

    enum class Transport { plain, selfSigned }; // the latter over TLS, with a certificate that nobody vouches for

    // Listens on a free port, or on `port`. Throws std::runtime_error if it cannot.
    explicit FakeHttpServer(Handler handler, Transport transport = Transport::plain, quint16 port = 0);
    virtual ~FakeHttpServer() = default;
    FakeHttpServer(const FakeHttpServer&) = delete;
    FakeHttpServer& operator=(const FakeHttpServer&) = delete;

    [[nodiscard]] QUrl address(const QString& path = {}) const;
    [[nodiscard]] const std::vector<ReceivedRequest>& requests() const { return m_requests; }
    // Method and target of each.
    [[nodiscard]] std::vector<QByteArray> calls() const;
    void forget();
    [[nodiscard]] qsizetype connections() const; // open now

    // By the number of the request since the last forget(), which forgets these too, from 0. What is asked of the
    // handler is done even if its answer is lost.
    std::map<std::size_t, Fault> faults;
    // In the place of what the handler would answer; the handler is not asked.
    std::map<std::size_t, HttpAnswer> replacements;

private:
    void welcome();
    void read(QTcpSocket& socket, QByteArray& unread);
    void respond(QTcpSocket& socket, const ReceivedRequest& request);

    Handler m_handler;
    Transport m_transport;
    std::unique_ptr<QTcpServer> m_server; // its sockets are its children
    std::vector<ReceivedRequest> m_requests;
};

} // namespace corvane
