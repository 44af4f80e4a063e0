// The fake Notion behind an HTTP server on the loopback. One thread, by its event loop.
#pragma once

#include "Support/FakeHttpServer.h"
#include "Support/FakeNotionService.h"

namespace corvane {

class FakeNotionServer final : public FakeNotionService, public FakeHttpServer {
public:
    explicit FakeNotionServer(quint16 port = 0)
        : FakeHttpServer([this](const ReceivedRequest& request) { return answer(request); }, Transport::plain, port) {}

    // For the client.
    [[nodiscard]] QUrl baseURL() const { return address(QStringLiteral("/v1")); }
};

} // namespace corvane
