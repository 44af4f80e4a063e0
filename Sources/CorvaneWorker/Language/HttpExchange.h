// One HTTP request and its answer as it arrives, over libcurl. It goes to the given address and nowhere else: no proxy,
// no redirect, no other protocol, no credentials of the user's. Any thread; the caller waits.
#pragma once

#include "CorvaneContract/Error.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QUrl>

#include <chrono>
#include <functional>

namespace corvane {

// text() is a clause without a full stop, for example “the connection was refused”.
class HttpExchangeError : public Error {
public:
    using Error::Error;
};

struct HttpLimits {
    std::chrono::milliseconds connect;
    std::chrono::milliseconds silence; // without a byte from the other side
    std::chrono::milliseconds total;
    qint64 answerBytes; // of the body
};

// Sends `json` and hands the body of the answer to `sink` piece by piece, whatever the status. Returns the status.
// Throws HttpExchangeError if no whole answer came within the limits, and passes on what the sink throws; either way
// the connection is closed.
int postJson(const QUrl& address, const QByteArray& json, const HttpLimits& limits,
             const std::function<void(QByteArrayView)>& sink);

} // namespace corvane
