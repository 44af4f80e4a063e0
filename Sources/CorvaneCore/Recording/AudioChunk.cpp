#include "CorvaneCore/Recording/AudioChunk.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QUrl>

namespace corvane {

QByteArray encodeAudioChunk(const AudioChunk& chunk) {
    // The writer sorts the keys of an object, and these have an order of their own.
    QByteArray json;
    const auto add = [&json](const QString& key, const QJsonValue& value) {
        json += (json.isEmpty() ? '{' : ',') + compactJson(QJsonObject{{key, value}}).sliced(1).chopped(1);
    };
    add(QStringLiteral("index"), chunk.index);
    add(QStringLiteral("url"), QUrl::fromLocalFile(chunk.url).toString(QUrl::FullyEncoded));
    add(QStringLiteral("startedAt"), referenceSeconds(chunk.startedAt));
    add(QStringLiteral("endedAt"), referenceSeconds(chunk.endedAt));
    return json + '}';
}

AudioChunk decodeAudioChunk(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    const QUrl url(object.required("url").string(), QUrl::StrictMode);
    if (!url.isLocalFile())
        throw JsonError(QStringLiteral("url is not the location of a file"));
    return {.index = object.required("index").integer(),
            .url = url.toLocalFile(),
            .startedAt = fromReferenceSeconds(object.required("startedAt").number()),
            .endedAt = fromReferenceSeconds(object.required("endedAt").number())};
}

} // namespace corvane
