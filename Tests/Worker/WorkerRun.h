// The worker's executable, run as the application runs it, and what it leaves in a run directory.
#pragma once

#include "Support/PrintQt.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"

#include <QProcess>

#include <vector>

namespace corvane::test {

struct Exit {
    int status = -1;
    QString output;
    QString error;
};

using Variables = std::map<QString, QString>;

// With the variables on top of the test's own.
void start(QProcess& process, const QStringList& arguments, const Variables& variables = {});
Exit finish(QProcess& process);
Exit runWorker(const QStringList& arguments, const Variables& variables = {});

[[nodiscard]] QStringList processArguments(const QString& audio, const QString& run, const QString& language = u"en"_s,
                                           const QStringList& speakers = {workerArguments::autoSpeakers});

[[nodiscard]] std::vector<WorkerJobEvent> events(const QString& run);
[[nodiscard]] WorkerJobState state(const QString& run);

} // namespace corvane::test
