#include "CorvaneWorker/Run/CrashNotice.h"

#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace corvane {

namespace {

constexpr std::array crashSignals{SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL};

// Read by the handler, which may call nothing that allocates.
struct Prepared {
    QByteArray statePath;
    QByteArray temporaryPath;
    QByteArray state;
    QByteArray eventsPath;
    QByteArray event;
    QByteArray line;
};
Prepared prepared;
volatile std::sig_atomic_t armed = 0;

void writeBytes(int fd, const QByteArray& bytes) {
    if (fd >= 0 && ::write(fd, bytes.constData(), static_cast<std::size_t>(bytes.size())) < 0)
        return;
}

void onCrash(int) {
    armed = 0;
    const int events = ::open(prepared.eventsPath.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    writeBytes(events, prepared.event);
    const int state =
        ::open(prepared.temporaryPath.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    writeBytes(state, prepared.state);
    if (state >= 0)
        ::rename(prepared.temporaryPath.constData(), prepared.statePath.constData());
    writeBytes(STDERR_FILENO, prepared.line);
    ::_exit(1);
}

// A library that calls exit() about a damaged model.
void onExit() {
    if (armed != 0)
        onCrash(0);
}

} // namespace

CrashNotice::CrashNotice(const QString& runDirectory, const QString& stage, const QString& sentence) {
    prepared.statePath = QFile::encodeName(runFiles::in(runDirectory, runFiles::jobState));
    prepared.temporaryPath = prepared.statePath + ".crash";
    prepared.state = encodeWorkerJobState({jobStatus::failed, sentence, 0.0, {}, stage});
    prepared.eventsPath = QFile::encodeName(runFiles::in(runDirectory, runFiles::events));
    prepared.event = encodeWorkerJobEvent(jobEvents::failed, QDateTime::currentDateTimeUtc(),
                                          {{QStringLiteral("error"), sentence}, {QStringLiteral("stage"), stage}});
    prepared.line = sentence.toUtf8() + '\n';
    static const int registered = std::atexit(&onExit);
    armed = registered == 0 ? 1 : 0;
    struct sigaction action {};
    action.sa_handler = &onCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : crashSignals)
        ::sigaction(signal, &action, nullptr);
}

CrashNotice::~CrashNotice() {
    armed = 0;
    for (const int signal : crashSignals)
        std::signal(signal, SIG_DFL);
}

} // namespace corvane
