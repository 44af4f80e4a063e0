#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

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
        throw JsonError(QStringLiteral("expected a UUID"));
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

QJsonObject encodeExample(const TranscriptExample& example) {
    return {{QStringLiteral("start"), example.start},
            {QStringLiteral("end"), example.end},
            {QStringLiteral("text"), example.text}};
}

// A long meeting has tens of thousands of these, which are written without a detour through a tree.
void writeSegment(PrettyJsonWriter& writer, const TranscriptSegment& segment) {
    static const QString end = QStringLiteral("end");
    static const QString speaker = QStringLiteral("speaker");
    static const QString start = QStringLiteral("start");
    static const QString text = QStringLiteral("text");
    writer.beginObject();
    writer.key(end);
    writer.value(segment.end);
    writer.key(speaker);
    writer.value(segment.speaker);
    writer.key(start);
    writer.value(segment.start);
    writer.key(text);
    writer.value(segment.text);
    writer.endObject();
}

QJsonObject encodeSpeaker(const TranscriptSpeaker& speaker) {
    return {{QStringLiteral("speaker"), speaker.speaker},
            {QStringLiteral("duration"), speaker.duration},
            {QStringLiteral("examples"), encodeArray(speaker.examples, encodeExample)}};
}

QJsonObject encodeSpeakerContext(const TranscriptSpeakerContext& context) {
    return {
        {QStringLiteral("speaker"), context.speaker},
        {QStringLiteral("short_label"), context.shortLabel},
        {QStringLiteral("context"), context.context},
        {QStringLiteral("notable_lines"), encodeArray(context.notableLines, [](const QString& line) { return line; })}};
}

QJsonObject encodeLLM(const TranscriptLLMContext& llm) {
    return {{QStringLiteral("provider"), llm.provider},
            {QStringLiteral("model"), llm.model},
            {QStringLiteral("summary"), llm.summary},
            {QStringLiteral("speaker_context"), encodeArray(llm.speakerContext, encodeSpeakerContext)}};
}

QJsonObject encodeAssignment(const SpeakerProfileAssignment& assignment) {
    return {{QStringLiteral("profile_id"), uuidText(assignment.profileID)},
            {QStringLiteral("display_name"), assignment.displayName}};
}

QJsonObject encodeMatch(const SpeakerProfileMatchSuggestion& match) {
    return {{QStringLiteral("speaker"), match.speaker},
            {QStringLiteral("profile_id"), uuidText(match.profileID)},
            {QStringLiteral("display_name"), match.displayName},
            {QStringLiteral("score"), match.score},
            {QStringLiteral("status"), match.status}};
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
    PrettyJsonWriter writer;
    const auto member = [&writer](const QString& key, const QJsonValue& value) {
        writer.key(key);
        writer.value(value);
    };
    writer.beginObject();
    if (result.llm)
        member(QStringLiteral("llm"), encodeLLM(*result.llm));
    member(QStringLiteral("metadata"), JSONValue(result.metadata).toQJson());
    writer.key(QStringLiteral("segments"));
    writer.beginArray();
    for (const TranscriptSegment& segment : result.segments)
        writeSegment(writer, segment);
    writer.endArray();
    member(QStringLiteral("speaker_names"), encodeMap(result.speakerNames, [](const QString& name) { return name; }));
    member(QStringLiteral("speaker_profile_assignments"),
           encodeMap(result.speakerProfileAssignments, encodeAssignment));
    member(QStringLiteral("speaker_profile_matches"), encodeArray(result.speakerProfileMatches, encodeMatch));
    member(QStringLiteral("speakers"), encodeArray(result.speakers, encodeSpeaker));
    writer.endObject();
    return writer.take();
}

} // namespace corvane
