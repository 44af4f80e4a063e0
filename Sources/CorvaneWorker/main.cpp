// corvane-worker: transcribes one recording, takes one speaker's voice from a finished transcript or has the transcript
// described anew, and exits. The application starts it and reads the files that it leaves.
#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Run/ContextRun.h"
#include "CorvaneWorker/Run/ExtractRun.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/Run/ModelsRun.h"
#include "CorvaneWorker/Run/ProcessRun.h"

#include <QFile>

#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

namespace {

constexpr int usageStatus = 2;
constexpr int politeness = 5; // below whatever the user works with meanwhile

// Keeps the memory of a long run near that of a short one: by default the C library takes ever larger blocks from heaps
// that never shrink, one for each thread, once blocks of that size have been freed.
void returnMemoryEarly() {
    constexpr int mappedBytes = 1 << 20; // from this size on a block is a mapping of its own
    constexpr int keptBytes = 4 << 20;
    constexpr int mostHeaps = 2;
    // NOLINTBEGIN(concurrency-mt-unsafe): there is one thread yet
    ::mallopt(M_MMAP_THRESHOLD, mappedBytes);
    ::mallopt(M_TRIM_THRESHOLD, keptBytes);
    ::mallopt(M_ARENA_MAX, mostHeaps);
    // NOLINTEND(concurrency-mt-unsafe)
}

void print(const QString& text) {
    std::fputs(text.toUtf8().constData(), stdout);
}

int perform(const corvane::Command& command) {
    using namespace corvane;
    if (const auto* process = std::get_if<ProcessCommand>(&command))
        return runProcess(*process);
    if (const auto* extract = std::get_if<ExtractCommand>(&command))
        return runExtract(*extract);
    if (const auto* context = std::get_if<ContextCommand>(&command))
        return runContext(*context);
    if (std::holds_alternative<ModelsCommand>(command))
        return runModels();
    print(std::holds_alternative<HelpCommand>(command)
              ? usageText()
              : QStringLiteral("corvane-worker %1\n").arg(QStringLiteral(CORVANE_VERSION)));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    returnMemoryEarly();
    ::umask(S_IRWXG | S_IRWXO);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    if (::nice(politeness) < 0)
        errno = 0;
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments << QFile::decodeName(argv[index]);
    try {
        return perform(corvane::parseCommandLine(arguments));
    } catch (const corvane::UsageError& error) {
        corvane::logLine(error.text() + QStringLiteral(" See corvane-worker --help."));
        return usageStatus;
    }
}
