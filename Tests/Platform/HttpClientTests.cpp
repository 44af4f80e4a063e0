#include "Support/FakeHttpServer.h"
#include "Support/Fakes/FakeHttpClient.h"
#include "Support/MainLoop.h"

#include "CorvanePlatform/Linux/Network/QtHttpClient.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace corvane {
namespace {

HttpAnswer answerTo(const ReceivedRequest& request) {
    if (request.target == "/missing")
        return {.status = 404, .headers = {{"X-Reason", "none"}}, .body = "no such thing"};
    if (request.target == "/refused") // as a service of tokens refuses
        return {.status = 401, .headers = {{"WWW-Authenticate", "Basic realm=\"x\""}}, .body = "who are you?"};
    if (request.target == "/large")
        return {.status = 200, .headers = {}, .body = QByteArray(50 * 1024 * 1024, 'x')};
    if (request.target == "/moved")
        return {.status = 302, .headers = {{"Location", "/here"}}, .body = {}};
    return {.status = 200, .headers = {}, .body = request.method + ' ' + request.target + ' ' + request.body};
}

HttpError::Kind failureOf(const Outcome<HttpAnswer>& outcome) {
    try {
        const HttpAnswer& answer = outcome.value();
        throw std::runtime_error("answered with status " + std::to_string(answer.status));
    } catch (const HttpError& error) {
        EXPECT_FALSE(error.text().isEmpty());
        return error.kind();
    }
}

class HttpClientTest : public testing::Test {
protected:
    FakeHttpServer m_server{answerTo};
    std::unique_ptr<HttpClient> m_client = std::make_unique<QtHttpClient>();

    [[nodiscard]] HttpRequest request(const QByteArray& method, const QString& path) const {
        return {.method = method, .url = m_server.address(path), .headers = {}, .body = std::nullopt};
    }
    [[nodiscard]] Outcome<HttpAnswer> outcome(const HttpRequest& request) {
        return loopedResult(m_client->send(request));
    }
};

enum class Kind { real, fake };

// What holds for the real client and for the fake.
class AnyHttpClientTest : public HttpClientTest, public testing::WithParamInterface<Kind> {
protected:
    AnyHttpClientTest() {
        if (GetParam() == Kind::fake)
            m_client = std::make_unique<FakeHttpClient>(
                [](const HttpRequest& one) { return answerTo(FakeHttpClient::received(one)); });
    }
};

TEST_P(AnyHttpClientTest, AnAnswerOfAnyStatusIsAnAnswer) {
    HttpRequest patch = request("PATCH", QStringLiteral("/a%20b"));
    patch.body = "{}";
    const HttpAnswer echo = outcome(patch).value();
    EXPECT_EQ(echo.status, 200);
    EXPECT_EQ(echo.body, "PATCH /a%20b {}");

    const HttpAnswer missing = outcome(request("GET", QStringLiteral("/missing"))).value();
    EXPECT_EQ(missing.status, 404);
    EXPECT_EQ(missing.body, "no such thing");
    EXPECT_EQ(missing.header("x-reason"), "none");

    HttpRequest refused = request("POST", QStringLiteral("/refused"));
    refused.body = "{}";
    EXPECT_EQ(outcome(refused).value().body, "who are you?");
}

TEST_P(AnyHttpClientTest, ALargeAnswerIsRefused) {
    EXPECT_EQ(failureOf(outcome(request("GET", QStringLiteral("/large")))), HttpError::Kind::tooLarge);
}

TEST_P(AnyHttpClientTest, NothingContinuesForOneWhoIsGoneOrAfterTheClient) {
    int continued = 0;
    const auto count = [&continued](const Outcome<HttpAnswer>&) { ++continued; };
    auto asker = std::make_unique<QObject>();
    auto dropped = m_client->send(request("GET", QStringLiteral("/a")));
    dropped.then(asker.get(), count);
    asker.reset();
    ASSERT_TRUE(loopUntil([&dropped] { return dropped.isFinished(); }));

    QObject stays;
    auto cut = m_client->send(request("GET", QStringLiteral("/b")));
    cut.then(&stays, count);
    m_client.reset();
    EXPECT_TRUE(cut.isFinished());
    EXPECT_TRUE(cut.isCanceled());
    EXPECT_EQ(continued, 0);
}

INSTANTIATE_TEST_SUITE_P(Clients, AnyHttpClientTest, testing::Values(Kind::real, Kind::fake),
                         [](const auto& instance) { return instance.param == Kind::real ? "Real" : "Fake"; });

TEST_F(HttpClientTest, ARequestWithABodyIsSentOnceWhateverTheConnectionDoes) {
    for (const Fault fault : {Fault::hangUp, Fault::cutShort}) {
        for (const QByteArray& body : {QByteArray(300'000, 'x'), QByteArray()}) {
            m_server.forget();
            // The second request goes over a connection that has already served one.
            m_server.faults = {{1, fault}};
            static_cast<void>(outcome(request("GET", QStringLiteral("/first"))).value());
            HttpRequest once = request(body.isEmpty() ? "GET" : "POST", QStringLiteral("/pages"));
            once.body = body;
            EXPECT_EQ(failureOf(outcome(once)), HttpError::Kind::connection);
            EXPECT_EQ(m_server.calls(), (std::vector<QByteArray>{"GET /first", once.method + " /pages"}));
            EXPECT_EQ(m_server.requests().at(1).body, body);
        }
    }
}

TEST_F(HttpClientTest, OnlyASilentServerTimesOut) {
    m_server.faults = {{0, Fault::byteByByte}, {1, Fault::silent}};
    HttpRequest get = request("GET", QStringLiteral("/a"));
    EXPECT_EQ(outcome(get).value().body, "GET /a ");
    get.timeout = 50ms;
    EXPECT_EQ(failureOf(outcome(get)), HttpError::Kind::timedOut);
}

TEST_F(HttpClientTest, WhatCannotBeUnpackedIsNoAnswer) {
    m_server.replacements = {{0, {.status = 200, .headers = {{"Content-Encoding", "gzip"}}, .body = "no gzip"}}};
    EXPECT_EQ(failureOf(outcome(request("GET", QStringLiteral("/a")))), HttpError::Kind::connection);
}

TEST_F(HttpClientTest, CancelingTheFutureEndsTheExchange) {
    m_server.faults = {{0, Fault::silent}};
    auto future = m_client->send(request("GET", QStringLiteral("/a")));
    ASSERT_TRUE(loopUntil([this] { return m_server.requests().size() == 1; }));
    future.cancel();
    ASSERT_TRUE(loopUntil([&future] { return future.isFinished(); }));
    EXPECT_TRUE(loopUntil([this] { return m_server.connections() == 0; }));
}

TEST_F(HttpClientTest, ASecretDoesNotTravel) {
    FakeHttpServer elsewhere(answerTo);
    // The library may send a GET that is redirected twice.
    const auto answerNext = [this](int status, const QByteArray& location) {
        m_server.replacements = {
            {m_server.requests().size(), {.status = status, .headers = {{"Location", location}}, .body = {}}}};
    };
    HttpRequest get = request("GET", QStringLiteral("/moved"));
    get.headers = {{"Authorization", "Bearer secret"}};
    EXPECT_EQ(outcome(get).value().body, "GET /here ");
    answerNext(302, elsewhere.address(QStringLiteral("/x")).toEncoded());
    EXPECT_EQ(failureOf(outcome(get)), HttpError::Kind::redirected);
    HttpRequest post = request("POST", QStringLiteral("/moved"));
    post.body = "{}";
    answerNext(307, "/x");
    const auto before = m_server.requests().size();
    EXPECT_EQ(failureOf(outcome(post)), HttpError::Kind::redirected);
    EXPECT_EQ(m_server.requests().size(), before + 1);
    EXPECT_TRUE(elsewhere.requests().empty());
}

TEST_F(HttpClientTest, AProxyIsNotAskedForThisMachine) {
    qputenv("http_proxy", "http://127.0.0.1:1");
    const auto answer = outcome(request("GET", QStringLiteral("/a")));
    qunsetenv("http_proxy");
    EXPECT_EQ(answer.value().body, "GET /a ");
}

TEST_F(HttpClientTest, AStrangerIsNotSpokenTo) {
    const FakeHttpServer stranger(answerTo, FakeHttpServer::Transport::selfSigned);
    HttpRequest get = request("GET", {});
    get.url = stranger.address(QStringLiteral("/a"));
    EXPECT_EQ(failureOf(outcome(get)), HttpError::Kind::tls);
    EXPECT_TRUE(stranger.requests().empty());
}

TEST_F(HttpClientTest, WhatCannotBeSentIsNotTried) {
    HttpRequest injecting = request("GET", QStringLiteral("/a"));
    injecting.headers = {{"Authorization", "Bearer a\r\nX-Other: b"}};
    EXPECT_EQ(failureOf(outcome(injecting)), HttpError::Kind::unusableRequest);
    EXPECT_TRUE(m_server.requests().empty());
    HttpRequest file = request("GET", {});
    file.url = QUrl(QStringLiteral("file:///etc/hostname"));
    EXPECT_EQ(failureOf(outcome(file)), HttpError::Kind::unusableRequest);
    HttpRequest nobody = request("GET", {});
    nobody.url = QUrl(QStringLiteral("http://a.invalid/"));
    EXPECT_EQ(failureOf(outcome(nobody)), HttpError::Kind::connection);
    nobody.url = QUrl(QStringLiteral("http://127.0.0.1:1/"));
    EXPECT_EQ(failureOf(outcome(nobody)), HttpError::Kind::connection);
}

} // namespace
} // namespace corvane
