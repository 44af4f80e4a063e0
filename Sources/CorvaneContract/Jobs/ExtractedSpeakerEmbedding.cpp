#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

namespace corvane {

ExtractedSpeakerEmbedding decodeExtractedSpeakerEmbedding(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    const auto runID = object.optional("source_run_id");
    return {.speaker = object.required("speaker").string(),
            .embedding = decodeArray(object.required("embedding"), [](JsonView value) { return value.number(); }),
            .modelID = object.required("model_id").string(),
            .dimension = object.required("dimension").integer(),
            .sampleCount = object.required("sample_count").integer(),
            .totalSpeechSeconds = object.required("total_speech_seconds").number(),
            .sourceRunID = runID ? std::optional(runID->string()) : std::nullopt};
}

QByteArray encodeExtractedSpeakerEmbedding(const ExtractedSpeakerEmbedding& value) {
    QJsonObject object{{QStringLiteral("speaker"), value.speaker},
                       {QStringLiteral("embedding"), encodeArray(value.embedding, [](double x) { return x; })},
                       {QStringLiteral("model_id"), value.modelID},
                       {QStringLiteral("dimension"), static_cast<qint64>(value.dimension)},
                       {QStringLiteral("sample_count"), static_cast<qint64>(value.sampleCount)},
                       {QStringLiteral("total_speech_seconds"), value.totalSpeechSeconds}};
    if (value.sourceRunID)
        object.insert(QStringLiteral("source_run_id"), *value.sourceRunID);
    return prettyJson(object);
}

} // namespace corvane
