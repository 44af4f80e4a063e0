// HTTP over Qt's network library, with the system's proxies and certificates. Main thread; the transfers run on a
// thread of the library's own.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"

#include <memory>

class QNetworkAccessManager;

namespace corvane {

class QtHttpClient final : public HttpClient {
public:
    QtHttpClient();
    ~QtHttpClient() override;

    [[nodiscard]] QFuture<Outcome<HttpAnswer>> send(const HttpRequest& request) override;

private:
    // Made for the first request: most sessions send none.
    std::unique_ptr<QNetworkAccessManager> m_network;
};

} // namespace corvane
