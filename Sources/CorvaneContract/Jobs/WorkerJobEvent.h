// One line of events.jsonl, the growing log of a run: one JSON object a line, in UTF-8, ended by a line feed.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>

namespace corvane {

struct WorkerJobEvent {
    std::optional<QDateTime> timestamp; // the "ts" key, absent if it is missing or not a time
    QString type;
    JSONValue::Object payload; // the whole object of the line

    friend bool operator==(const WorkerJobEvent&, const WorkerJobEvent&) = default;
};

namespace jobEvents {
inline const QString jobStarted = QStringLiteral("job_started");
inline const QString asrProgress = QStringLiteral("asr_progress");
inline const QString llmCompleted = QStringLiteral("llm_completed");
inline const QString llmFailed = QStringLiteral("llm_failed");
inline const QString llmSkipped = QStringLiteral("llm_skipped");
inline const QString completed = QStringLiteral("completed");
inline const QString failed = QStringLiteral("failed");
inline const QString cancelled = QStringLiteral("cancelled");
} // namespace jobEvents

// Nothing for a line that is not a JSON object with a string "type".
[[nodiscard]] std::optional<WorkerJobEvent> decodeWorkerJobEvent(QByteArrayView line);

// The line with its final line feed. `details` must not hold "ts" or "type".
[[nodiscard]] QByteArray encodeWorkerJobEvent(const QString& type, const QDateTime& time,
                                              const JSONValue::Object& details = {});

// An ISO 8601 internet date-time with a zone, with or without fractional seconds; nothing for any other text.
[[nodiscard]] std::optional<QDateTime> parseInternetDateTime(const QString& text);

} // namespace corvane
