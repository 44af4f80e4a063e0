#include "Worker/WorkerRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"

#include <gtest/gtest.h>

namespace corvane::test {

void start(QProcess& process, const QStringList& arguments, const Variables& variables) {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : variables)
        environment.insert(name, value);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CORVANE_WORKER_EXECUTABLE), arguments);
    ASSERT_TRUE(process.waitForStarted());
}

Exit finish(QProcess& process) {
    EXPECT_TRUE(process.waitForFinished(100000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

Exit runWorker(const QStringList& arguments, const Variables& variables) {
    QProcess process;
    start(process, arguments, variables);
    return finish(process);
}

QStringList processArguments(const QString& audio, const QString& run, const QString& language,
                             const QStringList& speakers) {
    namespace words = workerArguments;
    return QStringList{words::process, words::audio,   audio,           words::outDir,   run,     words::device,
                       u"mps"_s,       words::backend, u"whispermlx"_s, words::language, language} +
           speakers;
}

std::vector<WorkerJobEvent> events(const QString& run) {
    std::vector<WorkerJobEvent> all;
    for (const QByteArray& line : readFile(runFiles::in(run, runFiles::events)).value_or(QByteArray()).split('\n')) {
        if (line.isEmpty())
            continue;
        const auto event = decodeWorkerJobEvent(line);
        EXPECT_TRUE(event && event->timestamp) << line.constData();
        if (event)
            all.push_back(*event);
    }
    return all;
}

WorkerJobState state(const QString& run) {
    return decodeWorkerJobState(readFile(runFiles::in(run, runFiles::jobState)).value_or(QByteArray()));
}

} // namespace corvane::test
