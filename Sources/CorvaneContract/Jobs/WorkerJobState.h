// job_state.json: what a run says of itself, replaced as a whole. The worker writes it, the application reads it.
#pragma once

#include <QByteArray>
#include <QString>

#include <map>

namespace corvane {

struct WorkerJobState {
    QString status;                     // "running" or anything else; compared exactly
    QString message;                    // a line for a person, shown as it stands
    double progress = 0;                // fraction of the whole run, 0.0 to 1.0
    std::map<QString, QString> outputs; // output name to path
    QString stage = {};                 // in which the run failed; empty if it did not or if that is not known

    friend bool operator==(const WorkerJobState&, const WorkerJobState&) = default;
};

namespace jobStatus {
inline const QString running = QStringLiteral("running");
inline const QString completed = QStringLiteral("completed");
inline const QString failed = QStringLiteral("failed");
} // namespace jobStatus

// All keys but "stage", which is there if it is not empty, are required. Throws JsonError.
[[nodiscard]] WorkerJobState decodeWorkerJobState(const QByteArray& json);
[[nodiscard]] QByteArray encodeWorkerJobState(const WorkerJobState& state);

} // namespace corvane
