#include "CorvaneCore/Library/MeetingMetadata.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

// 2001-01-01T00:00:00Z in milliseconds since 1970.
constexpr qint64 referenceMilliseconds = 978'307'200'000;

void decodeInto(QString& field, const JsonObject& object, const char* key) {
    if (const auto value = object.optional(key))
        field = value->string();
}

void decodeInto(qint64& field, const JsonObject& object, const char* key) {
    if (const auto value = object.optional(key))
        field = value->integer();
}

void decodeInto(bool& field, const JsonObject& object, const char* key) {
    if (const auto value = object.optional(key))
        field = value->boolean();
}

std::optional<QString> optionalString(const JsonObject& object, const char* key) {
    const auto value = object.optional(key);
    return value ? std::optional(value->string()) : std::nullopt;
}

ProcessingSettings decodeSettings(const JsonObject& object) {
    ProcessingSettings settings;
    decodeInto(settings.speakerIdentificationContext, object, "speaker_identification_context");
    decodeInto(settings.language, object, "language");
    decodeInto(settings.speakerCount, object, "speaker_count");
    decodeInto(settings.diarizationEnabled, object, "diarization_enabled");
    decodeInto(settings.speakerCountMode, object, "speaker_count_mode");
    decodeInto(settings.minSpeakerCount, object, "min_speaker_count");
    decodeInto(settings.maxSpeakerCount, object, "max_speaker_count");
    settings.speakerCountMode = speakerCountMode::known(settings.speakerCountMode);
    return settings.withOrderedBounds();
}

void encodeSettings(QJsonObject& object, const ProcessingSettings& settings) {
    object.insert(QStringLiteral("speaker_identification_context"), settings.speakerIdentificationContext);
    object.insert(QStringLiteral("language"), settings.language);
    object.insert(QStringLiteral("speaker_count"), settings.speakerCount);
    object.insert(QStringLiteral("diarization_enabled"), settings.diarizationEnabled);
    object.insert(QStringLiteral("speaker_count_mode"), settings.speakerCountMode);
    object.insert(QStringLiteral("min_speaker_count"), settings.minSpeakerCount);
    object.insert(QStringLiteral("max_speaker_count"), settings.maxSpeakerCount);
}

template<typename Decode>
auto readDocument(const QString& directory, const QString& file, Decode decode)
    -> std::optional<decltype(decode(QByteArray()))> {
    const auto content = readFile(directory + QLatin1Char('/') + file);
    if (!content)
        return std::nullopt;
    try {
        return decode(*content);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

} // namespace

QString speakerCountMode::known(const QString& mode) {
    return mode == fixed || mode == range ? mode : automatic;
}

ProcessingSettings ProcessingSettings::withOrderedBounds() const {
    ProcessingSettings ordered = *this;
    ordered.maxSpeakerCount = std::max(minSpeakerCount, maxSpeakerCount);
    return ordered;
}

MeetingDraftMetadata decodeMeetingDraft(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    MeetingDraftMetadata draft;
    decodeInto(draft.title, object, "title");
    decodeInto(draft.audioPath, object, "audio_path");
    draft.settings = decodeSettings(object);
    decodeInto(draft.recordingStatus, object, "recording_status");
    if (const auto started = object.optional("started_at"))
        draft.startedAt = started->number();
    draft.chunksDirectory = optionalString(object, "chunks_directory");
    if (const auto chunks = object.optional("chunks"))
        draft.chunks = decodeArray(*chunks, [](JsonView chunk) { return chunk.string(); });
    return draft;
}

RunAppMetadata decodeRunAppMetadata(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    RunAppMetadata metadata;
    decodeInto(metadata.title, object, "title");
    decodeInto(metadata.audioPath, object, "audio_path");
    metadata.meetingID = optionalString(object, "meeting_id");
    metadata.settings = decodeSettings(object);
    return metadata;
}

QByteArray encodeMeetingDraft(const MeetingDraftMetadata& draft) {
    QJsonObject object{
        {QStringLiteral("title"), draft.title},
        {QStringLiteral("audio_path"), draft.audioPath},
        {QStringLiteral("recording_status"), draft.recordingStatus},
        {QStringLiteral("chunks"), encodeArray(draft.chunks, [](const QString& chunk) { return chunk; })}};
    encodeSettings(object, draft.settings);
    if (draft.startedAt)
        object.insert(QStringLiteral("started_at"), *draft.startedAt);
    if (draft.chunksDirectory)
        object.insert(QStringLiteral("chunks_directory"), *draft.chunksDirectory);
    return prettyJson(object);
}

QByteArray encodeRunAppMetadata(const RunAppMetadata& metadata) {
    QJsonObject object{{QStringLiteral("title"), metadata.title}, {QStringLiteral("audio_path"), metadata.audioPath}};
    encodeSettings(object, metadata.settings);
    if (metadata.meetingID)
        object.insert(QStringLiteral("meeting_id"), *metadata.meetingID);
    return prettyJson(object);
}

std::optional<MeetingDraftMetadata> readMeetingDraft(const QString& meetingDirectory) {
    return readDocument(meetingDirectory, meetingDraftFile, decodeMeetingDraft);
}

std::optional<RunAppMetadata> readRunAppMetadata(const QString& runDirectory) {
    return readDocument(runDirectory, runAppMetadataFile, decodeRunAppMetadata);
}

void writeMeetingDraft(const MeetingDraftMetadata& draft, const QString& meetingDirectory) {
    createPrivateDirectory(meetingDirectory);
    writeFileAtomically(meetingDirectory + QLatin1Char('/') + meetingDraftFile, encodeMeetingDraft(draft));
}

void writeRunAppMetadata(const RunAppMetadata& metadata, const QString& runDirectory) {
    writeFileAtomically(runDirectory + QLatin1Char('/') + runAppMetadataFile, encodeRunAppMetadata(metadata));
}

double referenceSeconds(const QDateTime& time) {
    return static_cast<double>(time.toMSecsSinceEpoch() - referenceMilliseconds) / 1000.0;
}

QDateTime fromReferenceSeconds(double seconds) {
    // A foreign document may hold any number; a time beyond the calendar is as good as none.
    const double limit = 8.0e12;
    const double bounded = std::isfinite(seconds) ? std::clamp(seconds, -limit, limit) : 0.0;
    return QDateTime::fromMSecsSinceEpoch(referenceMilliseconds + std::llround(bounded * 1000.0), Qt::UTC);
}

} // namespace corvane
