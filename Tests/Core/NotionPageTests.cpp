// What a meeting becomes on its way to Notion, and what is read of its answers: the parts that need no network.
#include "Support/PrintQt.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Interfaces/HttpStatusText.h"
#include "CorvaneCore/Notion/NotionAddresses.h"
#include "CorvaneCore/Notion/NotionClient.h"
#include "CorvaneCore/Notion/NotionError.h"
#include "CorvaneCore/Notion/NotionPage.h"
#include "CorvaneCore/Text/Characters.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

JSONValue::Object parsed(const QByteArray& json) {
    return JsonDocument(json).root().object().free();
}

template<typename Call>
QString notionErrorOf(Call call) {
    try {
        static_cast<void>(call());
    } catch (const NotionError& error) {
        return error.text();
    }
    return {};
}

TEST(CharactersTest, APieceEndsBetweenCharactersThatAReaderSees) {
    for (const QString& character :
         {QStringLiteral("x"), QStringLiteral("😀"), QStringLiteral("🇩🇪"), QStringLiteral("👩‍👩‍👧‍👦"),
          QStringLiteral("e\u0301\u0323"), QStringLiteral("👍🏽")}) {
        const QString full = character.repeated(notionTextLimit);
        EXPECT_EQ(splitText(full, notionTextLimit), std::vector{full});
        EXPECT_EQ(splitText(full + character, notionTextLimit), (std::vector{full, character}));
        EXPECT_EQ(firstCharacters(full + character, notionTextLimit), full);
    }
    EXPECT_EQ(splitText(QString(), 3), std::vector{QString()});
    EXPECT_EQ(splitText(QStringLiteral("ab cd ef"), 3),
              (std::vector{QStringLiteral("ab "), QStringLiteral("cd "), QStringLiteral("ef")}));
}

TEST(NotionAddressTest, FindsTheDatabaseInWhatAUserEnters) {
    const QString plain = QStringLiteral("0123456789abcdefABCDEF0123456789");
    EXPECT_EQ(notionDatabaseID(QStringLiteral(" https://notion.so/team/Meetings-%1?v=%2\n")
                                   .arg(plain, QString(plain).replace(QLatin1Char('0'), QLatin1Char('f')))),
              plain);
    EXPECT_EQ(notionDatabaseID(QStringLiteral("01234567-89ab-cdef-ABCD-EF0123456789")), plain);
    EXPECT_EQ(notionDatabaseID(QStringLiteral("https://notion.so/Meetings-0123456789abcdef")), std::nullopt);
}

TEST(NotionDatabaseTest, ReadsWhatIsThereAndDoesWithoutTheRest) {
    const auto info = notionDatabaseInfo(parsed(R"({
        "title": [{"plain_text": "Team "}, {"plain_text": 4}, 7, {"plain_text": "meetings"}],
        "properties": {"Meeting id": {"type": "number"}, "meeting_ID": {"type": "rich_text"}, "Topic": {"type": "title"},
                       "Attendees": {"type": "people"}, "Meeting Summary": {"type": "select"}, "Odd": {"type": 3},
                       "Odder": "title"}})"));
    EXPECT_EQ(info.title, u"Team meetings");
    EXPECT_EQ(info.titleProperty, u"Topic");
    EXPECT_EQ(info.meetingIDProperty, QStringLiteral("meeting_ID"));
    EXPECT_EQ(info.propertyTypes.size(), 5U);
    EXPECT_EQ(info.inferredParticipantsPropertyName(), QStringLiteral("Attendees"));
    EXPECT_EQ(info.inferredSummaryPropertyName(), QStringLiteral("Meeting Summary"));
    EXPECT_EQ(info.property(QStringLiteral(" tOPIC\n")),
              (NotionPropertyInfo{QStringLiteral("Topic"), QStringLiteral("title")}));
    EXPECT_EQ(info.property(QStringLiteral("meeting_ID")),
              (NotionPropertyInfo{QStringLiteral("meeting_ID"), QStringLiteral("rich_text")}));
    EXPECT_EQ(info.property(QStringLiteral(" ")), std::nullopt);
    EXPECT_EQ(info.property(QStringLiteral("Odd")), std::nullopt);

    const auto bare = notionDatabaseInfo(parsed(R"({"title": "none", "properties": []})"));
    EXPECT_EQ(bare.title, u"Untitled database");
    EXPECT_EQ(bare.titleProperty, u"Name");
    EXPECT_EQ(bare.meetingIDProperty, std::nullopt);
}

TEST(NotionDatabaseTest, AFoundPageNeedsNoMoreThanAnID) {
    const auto answer = parsed(R"({"results": [
        {"id": "a-1", "url": "u", "properties": {"N": {"type": "title", "title": [{"plain_text": "Weekly"}]}}},
        {"id": "a-2", "properties": {"Notes": {"deep": [{"er": "see \"m\\1\" there"}]}}},
        {"id": "a-3", "url": 5},
        {"id": 4, "properties": {"x": "m\\1"}},
        "m\\1"]})");
    const auto all = notionPageMatches(answer, std::nullopt);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0], (NotionPageMatch{QStringLiteral("a-1"), QStringLiteral("Weekly"), QStringLiteral("u")}));
    EXPECT_EQ(all[2], (NotionPageMatch{QStringLiteral("a-3"), QStringLiteral("Existing meeting page"), QString()}));
    const auto mentioning = notionPageMatches(answer, QStringLiteral("\"m\\1\""));
    ASSERT_EQ(mentioning.size(), 1U);
    EXPECT_EQ(mentioning[0].id, u"a-2");
    EXPECT_TRUE(notionPageMatches(parsed(R"({"results": {}})"), std::nullopt).empty());
}

TranscriptResult someResult() {
    TranscriptResult result;
    for (const char* label : {"S1", "S2", "S3", "S4", " "})
        result.speakers.push_back({QString::fromLatin1(label), 1.0, {}});
    result.speakerNames = {{QStringLiteral("S1"), QStringLiteral("Old")},
                           {QStringLiteral("S2"), QStringLiteral("ANA")}};
    result.segments = {{0, 1, QStringLiteral("Hello."), QStringLiteral("S1")},
                       {1, 2, QStringLiteral("Again."), QStringLiteral("S1")},
                       {3661, 3662, QStringLiteral("Yes."), QStringLiteral("S3")}};
    return result;
}

TEST(NotionPageTest, ParticipantsAreNamedOnce) {
    const SpeakerNames given{{QStringLiteral("S1"), QStringLiteral(" Ana ")},
                             {QStringLiteral("S3"), QStringLiteral(" ")}};
    const auto names = participantNames(someResult(), given);
    EXPECT_EQ(names, (std::vector{QStringLiteral("Ana"), QStringLiteral("S3"), QStringLiteral("S4")}));
    const NotionPropertyInfo people{QStringLiteral("Who"), QStringLiteral("people")};
    EXPECT_EQ(participantsPropertyValue({}, people), std::nullopt);
    EXPECT_EQ(summaryPropertyValue(QStringLiteral(" \n"), people), std::nullopt);
    EXPECT_EQ(
        notionErrorOf([&] {
            return summaryPropertyValue(QStringLiteral("s"), {QStringLiteral("S"), QStringLiteral("multi_select")});
        }),
        u"Mapped Notion column S must be rich text or multi-select, not multi_select");
}

TEST(NotionPageTest, TheBodyOfAPageIsToTheLetterWhatTheServiceTakes) {
    NotionMeeting meeting;
    meeting.meetingID = QStringLiteral("m1");
    meeting.result = someResult();
    meeting.result.llm =
        TranscriptLLMContext{.provider = {}, .model = {}, .summary = QStringLiteral(" Short. "), .speakerContext = {}};
    meeting.titleProperty = QStringLiteral("Topic");
    meeting.meetingIDProperty = {QStringLiteral("ID"), QStringLiteral("rich_text")};
    meeting.participantsProperty = {QStringLiteral("Who"), QStringLiteral("multi_select")};
    meeting.summaryProperty = {QStringLiteral("Sum"), QStringLiteral("rich_text")};
    meeting.speakerNames = {{QStringLiteral("S1"), QStringLiteral("Bo ")}};
    EXPECT_EQ(compactJson(notionPageProperties(meeting)),
              R"({"ID":{"rich_text":[{"text":{"content":"m1"}}]},"Sum":{"rich_text":[{"text":{"content":"Short."}}]},)"
              R"("Topic":{"title":[{"text":{"content":"Meeting transcript"}}]},)"
              R"("Who":{"multi_select":[{"name":"Bo"},{"name":"ANA"},{"name":"S3"},{"name":"S4"}]}})");
    meeting.participantsProperty->type = QStringLiteral("rich_text");
    EXPECT_EQ(compactJson(notionPageProperties(meeting)[u"Who"].toObject()),
              R"({"rich_text":[{"text":{"content":"Bo, ANA, S3, S4"}}]})");

    const auto block = [](const QByteArray& type, const QByteArray& text) {
        return JSONValue(parsed(R"({"object":"block","type":")" + type + R"(",")" + type +
                                R"(":{"rich_text":[{"type":"text","text":{"content":")" + text + R"("}}]}})"));
    };
    std::vector<JSONValue> blocks;
    for (const QJsonValue one : meetingBlocks(meeting.meetingID, meeting.result, meeting.speakerNames))
        blocks.emplace_back(parsed(compactJson(one.toObject())));
    EXPECT_EQ(blocks, (std::vector{block("paragraph", "Meeting ID: m1"), block("heading_2", "Summary"),
                                   block("paragraph", " Short. "), block("heading_2", "Transcript"),
                                   block("paragraph", "[00:00:00] Bo: Hello. Again."),
                                   block("paragraph", "[01:01:01] S3: Yes.")}));
}

TEST(NotionPageTest, AnAnswerWithoutJsonIsAJsonErrorWhateverItsStatus) {
    for (const int status : {200, 500}) {
        EXPECT_THROW(static_cast<void>(notionAnswer({.status = status, .headers = {}, .body = ""})), JsonError);
        EXPECT_THROW(static_cast<void>(notionAnswer({.status = status, .headers = {}, .body = "<html>"})), JsonError);
    }
    EXPECT_TRUE(notionAnswer({.status = 299, .headers = {}, .body = "[1]"}).empty());
    const auto refusal = [](int status, const char* body) {
        return notionErrorOf([&] { return notionAnswer({.status = status, .headers = {}, .body = body}); });
    };
    EXPECT_EQ(refusal(400, R"({"message": "No."})"), u"No.");
    EXPECT_EQ(refusal(503, R"({"message": 5})"), u"service unavailable");
    EXPECT_EQ(refusal(300, "[]"), u"multiple choices");
    EXPECT_EQ(refusal(499, "{}"), u"client error");
}

} // namespace
} // namespace corvane
