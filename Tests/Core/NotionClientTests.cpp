// The client against a Notion that remembers, over real HTTP.
#include "Support/FakeNotionServer.h"
#include "Support/Fakes/FakeHttpClient.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Notion/NotionClient.h"
#include "CorvaneCore/Notion/NotionError.h"
#include "CorvanePlatform/Linux/Network/QtHttpClient.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Calls = std::vector<QByteArray>;

const QString databaseID = QStringLiteral("0123456789abcdef0123456789abcdef");

class NotionClientTest : public testing::Test {
protected:
    FakeNotionServer m_server;
    QtHttpClient m_http;
    QObject m_asker;
    NotionClient m_client{m_http, m_asker, m_server.token, m_server.baseURL()};

    NotionClientTest() {
        m_server.databases[databaseID] = {.title = QStringLiteral("Meetings"),
                                          .columns = {{QStringLiteral("Topic"), QStringLiteral("title")},
                                                      {QStringLiteral("Meeting ID"), QStringLiteral("rich_text")},
                                                      {QStringLiteral("Who"), QStringLiteral("multi_select")}}};
    }

    // A page of so many blocks: two, and one for each turn of a speaker.
    [[nodiscard]] static NotionMeeting meetingOf(int blocks) {
        NotionMeeting meeting;
        meeting.meetingID = QStringLiteral("m1");
        meeting.title = QStringLiteral("Weekly");
        meeting.titleProperty = QStringLiteral("Topic");
        meeting.meetingIDProperty = {QStringLiteral("Meeting ID"), QStringLiteral("rich_text")};
        for (int i = 2; i < blocks; ++i)
            meeting.result.segments.push_back(
                {i * 1.0, i + 1.0, QString::number(i), i % 2 == 0 ? QStringLiteral("S1") : QStringLiteral("S2")});
        return meeting;
    }
    [[nodiscard]] Outcome<NotionPageMatch> publish(const NotionMeeting& meeting) {
        return loopedResult(m_client.createMeetingPage(databaseID, meeting));
    }
};

template<typename T>
QString errorOf(const Outcome<T>& outcome) {
    try {
        static_cast<void>(outcome.value());
    } catch (const NotionError& error) {
        return error.text();
    }
    return QStringLiteral("no error");
}

TEST_F(NotionClientTest, EveryRequestCarriesTheHeadersOfTheInterface) {
    const auto info = loopedResult(m_client.fetchDatabase(databaseID)).value();
    EXPECT_EQ(info.title, u"Meetings");
    EXPECT_EQ(info.meetingIDProperty, QStringLiteral("Meeting ID"));
    EXPECT_TRUE(
        loopedResult(m_client.findPages(databaseID, QStringLiteral("m1"), info.meetingIDProperty)).value().empty());
    EXPECT_TRUE(loopedResult(m_client.findPages(databaseID, QStringLiteral("m1"), {})).value().empty());
    EXPECT_EQ(m_server.calls(),
              (Calls{"GET /v1/databases/" + databaseID.toUtf8(), "POST /v1/databases/" + databaseID.toUtf8() + "/query",
                     "POST /v1/databases/" + databaseID.toUtf8() + "/query"}));
    for (const ReceivedRequest& request : m_server.requests()) {
        EXPECT_EQ(request.header("Authorization"), "Bearer secret_test");
        EXPECT_EQ(request.header("Notion-Version"), "2022-06-28");
        EXPECT_EQ(request.header("Content-Type"), "application/json");
    }
    EXPECT_EQ(m_server.requests()[0].body, "");
    EXPECT_EQ(m_server.requests()[1].body,
              R"({"filter":{"property":"Meeting ID","rich_text":{"equals":"m1"}},"page_size":50})");
    EXPECT_EQ(m_server.requests()[2].body, R"({"page_size":50})");
}

TEST_F(NotionClientTest, BlocksGoInBatchesOfAHundredOneAfterTheOther) {
    EXPECT_EQ(publish(meetingOf(100)).value().title, u"Weekly");
    EXPECT_EQ(m_server.calls(), Calls{"POST /v1/pages"});
    m_server.forget();
    const NotionPageMatch page = publish(meetingOf(301)).value();
    const QByteArray append = "PATCH /v1/blocks/" + page.id.toUtf8() + "/children";
    EXPECT_EQ(m_server.calls(), (Calls{"POST /v1/pages", append, append, append}));
    EXPECT_EQ(m_server.requests()[3].body,
              R"({"children":[{"object":"block","paragraph":{"rich_text":[{"text":{"content":"[00:05:00] S1: 300"},)"
              R"("type":"text"}]},"type":"paragraph"}]})");
    ASSERT_EQ(m_server.pages.size(), 2U);
    const FakeNotionPage& stored = m_server.pages[1];
    EXPECT_EQ(page.id, stored.id);
    ASSERT_EQ(stored.blocks.size(), 301U);
    for (std::size_t i = 2; i < 301; ++i)
        EXPECT_TRUE(stored.blockText(i).endsWith(QStringLiteral(": %1").arg(i)));
}

TEST_F(NotionClientTest, APublishedMeetingIsFoundUntilItsPageIsArchived) {
    const QString id = publish(meetingOf(3)).value().id;
    for (const auto& column : {std::optional(QStringLiteral("Meeting ID")), std::optional<QString>()}) {
        const auto found = loopedResult(m_client.findPages(databaseID, QStringLiteral("m1"), column)).value();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].id, id);
        EXPECT_EQ(found[0].title, u"Weekly");
        EXPECT_TRUE(loopedResult(m_client.findPages(databaseID, QStringLiteral("m2"), column)).value().empty());
    }
    const QJsonObject archived{{QStringLiteral("archived"), true}};
    static_cast<void>(loopedResult(m_client.request(QStringLiteral("/pages/") + id, "PATCH", archived)).value());
    EXPECT_EQ(m_server.requests().back().body, R"({"archived":true})");
    EXPECT_TRUE(loopedResult(m_client.findPages(databaseID, QStringLiteral("m1"), {})).value().empty());
}

TEST_F(NotionClientTest, AnAnswerWithoutIDOrAddressIsMadeDoWith) {
    m_server.replacements = {{0, {.status = 200, .headers = {}, .body = R"({"id":"a-b-c","url":7})"}},
                             {1, {.status = 200, .headers = {}, .body = "[]"}},
                             {2, {.status = 200, .headers = {}, .body = "{}"}}};
    EXPECT_EQ(publish(meetingOf(3)).value().url, u"https://www.notion.so/abc");
    EXPECT_EQ(publish(meetingOf(101)).value().id, u"");
    EXPECT_EQ(m_server.calls().back(), "PATCH /v1/blocks//children");
}

TEST_F(NotionClientTest, NothingFollowsAFailure) {
    NotionMeeting unfit = meetingOf(3);
    unfit.result.speakers.push_back({QStringLiteral("S1"), 1.0, {}});
    unfit.participantsProperty = {QStringLiteral("Who"), QStringLiteral("people")};
    EXPECT_EQ(errorOf(publish(unfit)), u"Mapped Notion column Who must be rich text or multi-select, not people");
    EXPECT_TRUE(m_server.requests().empty());

    const HttpAnswer busy{.status = 429, .headers = {{"Retry-After", "1"}}, .body = R"({"message":"Slow down."})"};
    m_server.replacements = {{0, busy}, {2, busy}};
    EXPECT_EQ(errorOf(publish(meetingOf(301))), u"Slow down.");
    EXPECT_EQ(m_server.requests().size(), 1U);
    EXPECT_EQ(errorOf(publish(meetingOf(301))), u"Slow down.");
    EXPECT_EQ(m_server.requests().size(), 3U);
    EXPECT_EQ(m_server.pages.at(0).blocks.size(), 100U);

    m_server.faults = {{4, Fault::hangUp}};
    EXPECT_THROW(static_cast<void>(publish(meetingOf(301)).value()), HttpError);
    EXPECT_EQ(m_server.requests().size(), 5U);
}

TEST_F(NotionClientTest, TheServiceAndTheNetworkSpeakForThemselves) {
    const NotionClient stranger(m_http, m_asker, QStringLiteral("other"), m_server.baseURL());
    EXPECT_EQ(errorOf(loopedResult(stranger.fetchDatabase(databaseID))), u"API token is invalid.");
    m_server.replacements = {{1, {.status = 502, .headers = {}, .body = "<html>Bad gateway</html>"}},
                             {2, {.status = 200, .headers = {}, .body = QByteArray(50 * 1024 * 1024, ' ')}}};
    m_server.replacements[5] = {.status = 403, .headers = {}, .body = R"({"message":"secret_test is blocked."})"};
    m_server.faults = {{3, Fault::cutShort}, {4, Fault::byteByByte}};
    EXPECT_THROW(static_cast<void>(loopedResult(m_client.fetchDatabase(databaseID)).value()), JsonError);
    EXPECT_THROW(static_cast<void>(loopedResult(m_client.fetchDatabase(databaseID)).value()), HttpError);
    EXPECT_THROW(static_cast<void>(loopedResult(m_client.fetchDatabase(databaseID)).value()), HttpError);
    EXPECT_EQ(loopedResult(m_client.fetchDatabase(databaseID)).value().title, u"Meetings");
    EXPECT_EQ(errorOf(loopedResult(m_client.fetchDatabase(databaseID))), u"(token) is blocked.");
}

TEST_F(NotionClientTest, AnAskerWhoGoesEndsThePublicationAfterThePresentRequest) {
    FakeHttpClient http(m_server);
    http.hold();
    auto asker = std::make_unique<QObject>();
    const auto future = NotionClient(http, *asker, m_server.token).createMeetingPage(databaseID, meetingOf(301));
    asker.reset();
    http.release();
    ASSERT_TRUE(loopUntil([&future] { return future.isFinished(); }));
    EXPECT_TRUE(future.isCanceled());
    ASSERT_EQ(http.requests.size(), 1U);
    EXPECT_EQ(http.requests[0].url, QUrl(QStringLiteral("https://api.notion.com/v1/pages")));
    EXPECT_EQ(m_server.pages.size(), 1U);
}

} // namespace
} // namespace corvane
