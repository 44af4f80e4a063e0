// The documents that the application and the worker exchange: what is tolerated in each, and what is not.
#include "Support/PrintQt.h"

#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QJsonDocument>

#include <gmock/gmock.h>

#include <random>

using namespace corvane;

namespace {

template<typename Decode>
bool decodes(Decode decode, const QByteArray& json) {
    try {
        (void)decode(json);
        return true;
    } catch (const JsonError& error) {
        EXPECT_FALSE(error.text().isEmpty());
        return false;
    }
}

QByteArray resultWith(const QByteArray& keys) {
    return R"({"metadata":{},"segments":[],"speakers":[])" + (keys.isEmpty() ? keys : "," + keys) + "}";
}

const QByteArray uuid = "\"0a1b2c3d-0000-4000-8000-00000000000f\"";

} // namespace

TEST(WorkerJobState, NeedsItsFourKeysInTheirTypes) {
    const auto state = [](const QByteArray& progress, const QByteArray& outputs) {
        return R"({"status":"s","message":"m","progress":)" + progress + R"(,"outputs":)" + outputs + R"(,"more":1})";
    };
    const WorkerJobState read = decodeWorkerJobState(state("1", R"({"a":"/p"})"));
    EXPECT_EQ(read.progress, 1.0);
    EXPECT_EQ(read.outputs.at(u"a"_s), u"/p"_s);
    EXPECT_EQ(decodeWorkerJobState(encodeWorkerJobState(read)), read);
    for (const auto& [progress, outputs] : std::vector<std::pair<QByteArray, QByteArray>>{
             {"null", "{}"}, {"\"0.5\"", "{}"}, {"true", "{}"}, {"1e400", "{}"}, {"0", R"({"a":1})"}, {"0", "null"}})
        EXPECT_FALSE(decodes(decodeWorkerJobState, state(progress, outputs))) << progress.data();
    EXPECT_FALSE(decodes(decodeWorkerJobState, R"({"status":"s","message":"m","progress":0})"));
}

TEST(WorkerJobEvent, KeepsALineThatIsAnObjectWithAType) {
    const auto time = [](const char* ts) -> QString {
        const auto event = decodeWorkerJobEvent(QByteArray("{\"type\":\"x\",\"ts\":") + ts + "}");
        if (!event)
            return u"dropped"_s;
        return event->timestamp ? event->timestamp->toUTC().toString(Qt::ISODateWithMs) : u"none"_s;
    };
    EXPECT_EQ(time("\"2026-03-02T14:05:33Z\""), u"2026-03-02T14:05:33.000Z"_s);
    EXPECT_EQ(time("\"2026-03-02T14:05:33.250Z\""), u"2026-03-02T14:05:33.250Z"_s);
    EXPECT_EQ(time("\"2026-03-02T00:05:33.123456+01:00\""), u"2026-03-01T23:05:33.123Z"_s);
    EXPECT_EQ(time("\"2026-03-02T23:05:33-01:30\""), u"2026-03-03T00:35:33.000Z"_s);
    for (const char* none : {"\"2026-03-02 14:05:33\"", "\"2026-03-02T14:05:33\"", "\"2026-02-30T14:05:33Z\"",
                             "\"2026-03-02T14:05:33Z \"", "\"2026-03-02T25:05:33Z\"", "5", "null"})
        EXPECT_EQ(time(none), u"none"_s) << none;
    EXPECT_EQ(decodeWorkerJobEvent("{\"type\":\"x\"}")->payload.size(), 1U);
    for (const char* dropped :
         {"[1,2]", "{\"type\":5}", "{\"a\":1}", "{\"type\":\"x\"", "\"type\"", "{\"type\":\"x\"}{}"})
        EXPECT_FALSE(decodeWorkerJobEvent(dropped)) << dropped;

    const JSONValue::Object details{{u"n"_s, 1.5}};
    const QByteArray line = encodeWorkerJobEvent(u"x"_s, *parseInternetDateTime(u"2026-03-02T14:05:33Z"_s), details);
    EXPECT_EQ(line, "{\"n\":1.5,\"ts\":\"2026-03-02T14:05:33.000Z\",\"type\":\"x\"}\n");
}

TEST(TranscriptResult, DecodesAllOrNothing) {
    const QByteArray match =
        R"({"speaker":"A","profile_id":)" + uuid + R"(,"display_name":"n","score":1,"status":"odd"})";
    const QByteArray assignment = R"({"A":{"profile_id":)" + uuid + R"(,"display_name":"n"}})";
    const QByteArray segment = R"("start":1,"end":2.5,"text":"t","speaker":"A")";
    struct Case {
        QByteArray json;
        bool decodes;
    };
    const std::vector<Case> cases{
        {resultWith(""), true},
        {resultWith(
             R"("speaker_names":null,"speaker_profile_assignments":null,"speaker_profile_matches":null,"llm":null)"),
         true},
        {R"({"metadata":{},"segments":[],"speakers":null})", false},
        {R"({"metadata":{},"segments":[]})", false},
        {R"({"metadata":null,"segments":[],"speakers":[]})", false},
        {R"({"metadata":{},"segments":[{)" + segment + R"(,"extra":[1]}],"speakers":[]})", true},
        {R"({"metadata":{},"segments":[{"start":"1","end":2,"text":"t","speaker":"A"}],"speakers":[]})", false},
        {R"({"metadata":{},"segments":[{"start":true,"end":2,"text":"t","speaker":"A"}],"speakers":[]})", false},
        {R"({"metadata":{},"segments":[{)" + segment + R"(},{"start":1}],"speakers":[]})", false},
        {R"({"metadata":{},"segments":[],"speakers":[{"speaker":"A","duration":1,"examples":[{"start":1,"end":2}]}]})",
         false},
        {resultWith(R"("llm":{"provider":"x","model":"y","summary":"z"})"), false},
        {resultWith(R"("llm":{"provider":"x","model":"y","summary":"z","speaker_context":[]})"), true},
        {resultWith("\"speaker_profile_matches\":[" + match + "]"), true},
        {resultWith("\"speaker_profile_matches\":[" + QByteArray(match).replace("score\":1", "score\":\"1\"") + "]"),
         false},
        {resultWith("\"speaker_profile_assignments\":" + assignment), true},
        {resultWith("\"speaker_profile_assignments\":" + QByteArray(assignment).replace("0a1b2c3d-", "0a1b2c3d")),
         false},
        {resultWith("\"speaker_profile_assignments\":" + QByteArray(assignment).replace(uuid, "\"\"")), false},
        {resultWith(R"("speaker_names":{"A":1})"), false},
        {resultWith("") + "x", false},
        {"", false},
        {"[]", false},
        {"\xef\xbb\xbf" + resultWith(""), false},
        {R"({"metadata":{"a":"\ud800"},"segments":[],"speakers":[]})", false},
        {"{\"metadata\":{\"a\":\"\xff\"},\"segments\":[],\"speakers\":[]}", false},
        {R"({"metadata":{"a":)" + QByteArray(200, '[') + QByteArray(200, ']') + R"(},"segments":[],"speakers":[]})",
         true},
        {R"({"metadata":{"a":)" + QByteArray(100'000, '[') + QByteArray(100'000, ']') +
             R"(},"segments":[],"speakers":[]})",
         false},
        {QByteArray(100'000, '{'), false}};
    for (const Case& c : cases)
        EXPECT_EQ(decodes(decodeTranscriptResult, c.json), c.decodes) << c.json.left(200).data();
}

TEST(TranscriptResult, FreeFormMetadataSurvivesARewrite) {
    const QByteArray metadata =
        R"({"a":[1,true,null,{"b":"c"}],"big":12345678901234567890,"control":"\u0000\u001f\"\\/ü😀",)"
        R"("deep":)" +
        QByteArray(500, '[') + QByteArray(500, ']') + R"(,"empty":"","exact":0.1})";
    const TranscriptResult first =
        decodeTranscriptResult(R"({"metadata":)" + metadata + R"(,"segments":[],"speakers":[],"unknown":1})");
    EXPECT_EQ(*first.metadata.at(u"a"_s).arrayValue(),
              (JSONValue::Array{1, true, nullptr, JSONValue::Object{{u"b"_s, u"c"_s}}}));
    EXPECT_EQ(numberAt(first.metadata, u"big"_s), 12345678901234567890.0);
    const QByteArray written = encodeTranscriptResult(first);
    EXPECT_EQ(decodeTranscriptResult(written), first);
    EXPECT_EQ(encodeTranscriptResult(decodeTranscriptResult(written)), written);
    EXPECT_FALSE(written.contains("unknown"));
}

TEST(TranscriptResult, WritesPrettyWithSortedKeysAndEveryCollection) {
    TranscriptResult result;
    result.segments = {{.start = 0, .end = 1.5, .text = u"a\n\"b\""_s, .speaker = u"S"_s}};
    result.speakerProfileAssignments = {{u"S"_s, {QUuid(u"0a1b2c3d-0000-4000-8000-00000000000f"_s), u"N"_s}}};
    EXPECT_EQ(encodeTranscriptResult(result), R"({
    "metadata": {},
    "segments": [
        {
            "end": 1.5,
            "speaker": "S",
            "start": 0,
            "text": "a\n\"b\""
        }
    ],
    "speaker_names": {},
    "speaker_profile_assignments": {
        "S": {
            "display_name": "N",
            "profile_id": "0A1B2C3D-0000-4000-8000-00000000000F"
        }
    },
    "speaker_profile_matches": [],
    "speakers": []
}
)");
    EXPECT_EQ(result.segments.front().id(), u"0-1.5-S-a\n\"b\""_s);
}

TEST(PrettyJson, IsTheUsualFormAndCanAlwaysBeRead) {
    QString everyCharacter;
    for (char16_t c = 0; c < 0x300; ++c)
        everyCharacter.append(QChar(c));
    everyCharacter += u"\u2028😀"_s;
    QJsonArray numbers;
    for (const double number : {0.0, 0.1, -2.5, 1e-7, 1e15, 123456789012345678.0, 9.3e18, -1e300, 5e-324})
        numbers.append(number);
    numbers.append(std::numeric_limits<qint64>::max());
    QJsonObject object{
        {u"b"_s, everyCharacter}, {u"a"_s, numbers}, {everyCharacter, QJsonValue::Null}, {u"e"_s, QJsonObject()}};
    for (int depth = 0; depth < 40; ++depth)
        object = {{u"inner"_s, QJsonArray{object, true, false, QJsonArray(), QString()}}};
    const QJsonDocument expected(QJsonArray{object});
    EXPECT_EQ(QJsonDocument::fromJson(prettyJson(object)).toJson(), QJsonDocument(object).toJson());
    EXPECT_EQ(QJsonDocument::fromJson(prettyJson(QJsonArray{object})).toJson(), expected.toJson());

    // Keys that sort differently as UTF-8 and as UTF-16 come out in one order, and as they were.
    std::mt19937 random(1);
    const QString alphabet = u"aZ_é\uFFFD\uE000"_s + QChar(0xd83d) + QChar(0xde00) + QChar(0);
    JSONValue::Object odd;
    for (int i = 0; i < 2000; ++i) {
        QString key;
        for (auto length = random() % 4; length > 0; --length)
            key.append(alphabet[static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size()))]);
        if (key.isValidUtf16())
            odd.emplace(key, i);
    }
    TranscriptResult result;
    result.metadata = odd;
    EXPECT_EQ(decodeTranscriptResult(encodeTranscriptResult(result)).metadata, odd);

    const QString halfPair = u"a"_s + QChar(0xd83d) + u"b"_s;
    const QByteArray written = prettyJson(QJsonObject{{u"title"_s, halfPair}});
    EXPECT_EQ(JsonDocument(written).root().object().required("title").string(),
              u"a"_s + QChar(QChar::ReplacementCharacter) + u"b"_s);
}
