#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Text/UserText.h"

#include <QLocale>

namespace corvane {

namespace {

QString shortest(double value) {
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString text(JsonView view) {
    return view.string();
}

QUuid decodeUuid(JsonView view) {
    // QUuid takes braces and other spellings as well; a document holds the plain form alone.
    const QString form = view.string();
    const QUuid uuid = form.size() == 36 ? QUuid::fromString(form) : QUuid();
    if (uuid.isNull() && form != uuidText(QUuid()))
        throw JsonError(UserText::tr("expected a UUID"));
    return uuid;
}

TranscriptSegment decodeSegment(JsonView view) {
    const JsonObject object = view.object();
    return {.start = object.required("start").number(),
            .end = object.required("end").number(),
            .text = object.required("text").string(),
            .speaker = object.required("speaker").string()};
}

TranscriptExample decodeExample(JsonView view) {
    const JsonObject object = view.object();
    return {.start = object.required("start").number(),
            .end = object.required("end").number(),
            .text = object.required("text").string()};
}

TranscriptSpeaker decodeSpeaker(JsonView view) {
    const JsonObject object = view.object();
    return {.speaker = object.required("speaker").string(),
            .duration = object.required("duration").number(),
            .examples = decodeArray(object.required("examples"), decodeExample)};
}

TranscriptSpeakerContext decodeSpeakerContext(JsonView view) {
    const JsonObject object = view.object();
    return {.speaker = object.required("speaker").string(),
            .shortLabel = object.required("short_label").string(),
            .context = object.required("context").string(),
            .notableLines = decodeArray(object.required("notable_lines"), text)};
}

TranscriptLLMContext decodeLLM(JsonView view) {
    const JsonObject object = view.object();
    return {.provider = object.required("provider").string(),
            .model = object.required("model").string(),
            .summary = object.required("summary").string(),
            .speakerContext = decodeArray(object.required("speaker_context"), decodeSpeakerContext)};
}

SpeakerProfileAssignment decodeAssignment(JsonView view) {
    const JsonObject object = view.object();
    return {.profileID = decodeUuid(object.required("profile_id")),
            .displayName = object.required("display_name").string()};
}

SpeakerProfileMatchSuggestion decodeMatch(JsonView view) {
    const JsonObject object = view.object();
    return {.speaker = object.required("speaker").string(),
            .profileID = decodeUuid(object.required("profile_id")),
            .displayName = object.required("display_name").string(),
            .score = object.required("score").number(),
            .status = object.required("status").string()};
}

void write(JsonStream& json, const TranscriptSpeaker& speaker);
void write(JsonStream& json, const TranscriptSpeakerContext& context);
void write(JsonStream& json, const SpeakerProfileMatchSuggestion& match);

void write(JsonStream& json, const TranscriptExample& example) {
    json.beginObject();
    json.member(u"end", example.end);
    json.member(u"start", example.start);
    json.member(u"text", example.text);
    json.endObject();
}

void write(JsonStream& json, const TranscriptSegment& segment) {
    json.beginObject();
    json.member(u"end", segment.end);
    json.member(u"speaker", segment.speaker);
    json.member(u"start", segment.start);
    json.member(u"text", segment.text);
    json.endObject();
}

template<typename T>
void writeArray(JsonStream& json, QStringView name, const std::vector<T>& values) {
    json.key(name);
    json.beginArray();
    for (const T& value : values) {
        if constexpr (std::is_same_v<T, QString>)
            json.value(value);
        else
            write(json, value);
    }
    json.endArray();
}

void write(JsonStream& json, const TranscriptSpeaker& speaker) {
    json.beginObject();
    json.member(u"duration", speaker.duration);
    writeArray(json, u"examples", speaker.examples);
    json.member(u"speaker", speaker.speaker);
    json.endObject();
}

void write(JsonStream& json, const TranscriptSpeakerContext& context) {
    json.beginObject();
    json.member(u"context", context.context);
    writeArray(json, u"notable_lines", context.notableLines);
    json.member(u"short_label", context.shortLabel);
    json.member(u"speaker", context.speaker);
    json.endObject();
}

void write(JsonStream& json, const TranscriptLLMContext& llm) {
    json.beginObject();
    json.member(u"model", llm.model);
    json.member(u"provider", llm.provider);
    writeArray(json, u"speaker_context", llm.speakerContext);
    json.member(u"summary", llm.summary);
    json.endObject();
}

void write(JsonStream& json, const SpeakerProfileMatchSuggestion& match) {
    json.beginObject();
    json.member(u"display_name", match.displayName);
    json.member(u"profile_id", uuidText(match.profileID));
    json.member(u"score", match.score);
    json.member(u"speaker", match.speaker);
    json.member(u"status", match.status);
    json.endObject();
}

QJsonObject encodeAssignment(const SpeakerProfileAssignment& assignment) {
    return {{QStringLiteral("profile_id"), uuidText(assignment.profileID)},
            {QStringLiteral("display_name"), assignment.displayName}};
}

} // namespace

QString uuidText(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

QString TranscriptSegment::id() const {
    return QStringList{shortest(start), shortest(end), speaker, text}.join(QLatin1Char('-'));
}

QString TranscriptExample::id() const {
    return QStringList{shortest(start), shortest(end), text}.join(QLatin1Char('-'));
}

QString SpeakerProfileMatchSuggestion::id() const {
    return speaker + QLatin1Char('-') + uuidText(profileID);
}

TranscriptResult decodeTranscriptResult(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    TranscriptResult result;
    result.metadata = object.required("metadata").object().free();
    result.segments = decodeArray(object.required("segments"), decodeSegment);
    result.speakers = decodeArray(object.required("speakers"), decodeSpeaker);
    if (const auto names = object.optional("speaker_names"))
        result.speakerNames = names->object().map(text);
    if (const auto assignments = object.optional("speaker_profile_assignments"))
        result.speakerProfileAssignments = assignments->object().map(decodeAssignment);
    if (const auto matches = object.optional("speaker_profile_matches"))
        result.speakerProfileMatches = decodeArray(*matches, decodeMatch);
    if (const auto llm = object.optional("llm"))
        result.llm = decodeLLM(*llm);
    return result;
}

QByteArray encodeTranscriptResult(const TranscriptResult& result) {
    JsonStream json;
    json.beginObject();
    if (result.llm) {
        json.key(u"llm");
        write(json, *result.llm);
    }
    json.member(u"metadata", JSONValue(result.metadata).toQJson());
    writeArray(json, u"segments", result.segments);
    json.member(u"speaker_names", QJsonValue(encodeMap(result.speakerNames, [](const QString& name) { return name; })));
    json.member(u"speaker_profile_assignments",
                QJsonValue(encodeMap(result.speakerProfileAssignments, encodeAssignment)));
    writeArray(json, u"speaker_profile_matches", result.speakerProfileMatches);
    writeArray(json, u"speakers", result.speakers);
    json.endObject();
    return json.take();
}

} // namespace corvane
