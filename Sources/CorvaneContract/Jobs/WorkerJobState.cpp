#include "CorvaneContract/Jobs/WorkerJobState.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

namespace corvane {

WorkerJobState decodeWorkerJobState(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    const auto stage = object.optional("stage");
    return {.status = object.required("status").string(),
            .message = object.required("message").string(),
            .progress = object.required("progress").number(),
            .outputs = object.required("outputs").object().map([](JsonView value) { return value.string(); }),
            .stage = stage ? stage->free().stringValue().value_or(QString()) : QString()};
}

QByteArray encodeWorkerJobState(const WorkerJobState& state) {
    QJsonObject object{{QStringLiteral("status"), state.status},
                       {QStringLiteral("message"), state.message},
                       {QStringLiteral("progress"), state.progress},
                       {QStringLiteral("outputs"), encodeMap(state.outputs, [](const QString& path) { return path; })}};
    if (!state.stage.isEmpty())
        object.insert(QStringLiteral("stage"), state.stage);
    return prettyJson(object);
}

} // namespace corvane
