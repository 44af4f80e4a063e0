// HTTP as the core needs it: one request, one whole answer in memory. The application owns one client, on the main
// thread; whoever asks must not outlive it.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Interfaces/Outcome.h"

#include <QByteArray>
#include <QFuture>
#include <QUrl>

#include <chrono>
#include <optional>
#include <vector>

namespace corvane {

struct HttpHeader {
    QByteArray name;
    QByteArray value;

    friend bool operator==(const HttpHeader&, const HttpHeader&) = default;
};

// Which redirects of a GET are followed; those of any other request never are.
enum class HttpRedirects {
    sameOrigin,  // within scheme, host and port: the headers may hold a secret
    notLessSafe, // anywhere, but never from HTTPS to HTTP; for requests that carry nothing
};

struct HttpRequest {
    QByteArray method; // in capitals
    QUrl url;
    std::vector<HttpHeader> headers; // sent besides those that the transport needs
    std::optional<QByteArray> body;
    // How long nothing at all may move in either direction. An exchange that does move may take ten times as long.
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
    qint64 maximumAnswerBytes = 32LL * 1024 * 1024;
    HttpRedirects redirects = HttpRedirects::sameOrigin;
};

struct HttpAnswer {
    int status = 0; // any, also of a failure
    std::vector<HttpHeader> headers;
    QByteArray body;

    // The first of that name, in whatever case it was sent; empty if there is none.
    [[nodiscard]] QByteArray header(const QByteArray& name) const {
        for (const HttpHeader& one : headers) {
            if (one.name.compare(name, Qt::CaseInsensitive) == 0)
                return one.value;
        }
        return {};
    }
};

// There is no answer, or none that can be used. text() is what a user reads, where possible in the platform's words.
class HttpError : public Error {
public:
    enum class Kind {
        unusableRequest, // nothing was sent
        connection,      // not made, refused, lost, or ended before the answer was whole
        tls,             // the other side is not who it should be, or cannot be spoken to in private
        timedOut,
        tooLarge,
        redirected, // to where it must not be followed
    };

    HttpError(Kind kind, const QString& text) : Error(text), m_kind(kind) {}
    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

class HttpClient {
public:
    virtual ~HttpClient() = default; // ends what is under way; nothing continues after it

    // Starts, and returns at once; the future finishes on the main loop, with an answer or an HttpError. Bind what
    // follows to the object that asks: send(...).then(this, ...). Canceling the future ends the exchange.
    //
    // A request with a body, be it an empty one, is sent once, whatever happens to the connection, since the other side
    // may have acted on it. No cookie, cache or password is kept. This machine is spoken to without a proxy.
    [[nodiscard]] virtual QFuture<Outcome<HttpAnswer>> send(const HttpRequest& request) = 0;
};

} // namespace corvane
