// The names of the files in a run directory, as the application and the worker both use them.
#pragma once

#include <QString>

namespace corvane::runFiles {

inline const QString jobState = QStringLiteral("job_state.json");
inline const QString events = QStringLiteral("events.jsonl");
inline const QString result = QStringLiteral("result.json");
inline const QString transcriptText = QStringLiteral("transcript.txt");
inline const QString transcriptSRT = QStringLiteral("transcript.srt");
inline const QString transcriptVTT = QStringLiteral("transcript.vtt");
inline const QString standardOutputLog = QStringLiteral("worker.stdout.log");
inline const QString standardErrorLog = QStringLiteral("worker.stderr.log");

[[nodiscard]] inline QString in(const QString& runDirectory, const QString& file) {
    return runDirectory + QLatin1Char('/') + file;
}

} // namespace corvane::runFiles
