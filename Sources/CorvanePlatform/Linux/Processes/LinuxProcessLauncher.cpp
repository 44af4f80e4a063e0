#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Processes/Spawn.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <future>
#include <system_error>
#include <thread>

namespace corvane {

namespace {

constexpr int firstFreeDescriptor = 3;

class SpawnedProcess final : public LaunchedProcess {
public:
    explicit SpawnedProcess(pid_t process) : m_process(process) {}
    [[nodiscard]] std::int64_t processID() const override { return m_process; }
    [[nodiscard]] bool isRunning() const override { return m_running; }
    [[nodiscard]] std::int32_t terminationStatus() const override { return m_status; }

    void end(std::int32_t status) {
        m_status = status;
        m_running = false;
    }

private:
    const pid_t m_process;
    std::atomic<std::int32_t> m_status = 0;
    std::atomic<bool> m_running = true;
};

UniqueFd aboveStandardStreams(UniqueFd fd) {
    // If this process runs without standard streams, a file may have got one of their numbers.
    if (!fd || fd.get() >= firstFreeDescriptor)
        return fd;
    return UniqueFd(::fcntl(fd.get(), F_DUPFD_CLOEXEC, firstFreeDescriptor));
}

UniqueFd openLog(const QString& path) {
    // Without O_NONBLOCK a FIFO that nobody reads would hang the application; the child gets a blocking descriptor.
    UniqueFd fd(path.contains(QChar(0))
                    ? -1
                    : ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    const int error = errno;
    fd = aboveStandardStreams(std::move(fd));
    if (!fd || ::fcntl(fd.get(), F_SETFL, 0) != 0)
        throw LaunchError(UserText::tr("%1: %2").arg(QFileInfo(path).fileName(), systemErrorText(error)));
    return fd;
}

void blockSignalsInThisThread() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

// The life of one launched process, from its start to its handler. The thread exists before the process does, so that
// no process is left without one that waits for it.
void spawnAndReap(const SpawnRequest& request, std::promise<std::shared_ptr<SpawnedProcess>> started,
                  const ProcessLauncher::TerminationHandler& onTermination) {
    blockSignalsInThisThread();
    std::shared_ptr<SpawnedProcess> process;
    try {
        process = std::make_shared<SpawnedProcess>(spawn(request));
    } catch (...) {
        started.set_exception(std::current_exception());
        return;
    }
    started.set_value(process);
    const std::int32_t status = waitForEnd(static_cast<pid_t>(process->processID()));
    process->end(status);
    if (onTermination)
        onTermination(status);
}

// Reads until the command has ended or closed the pipe. A background process that it left behind may hold the pipe
// open for as long as it likes.
QByteArray readOutput(int pipe, pid_t process, const CommandCancellation& cancelled) {
    constexpr int lookEveryMilliseconds = 50;
    constexpr qsizetype kept = 1'048'576;
    // The header of glibc 2.36 declares pidfd_open() without C linkage, so that it cannot be called from C++.
    const UniqueFd end(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    QByteArray output;
    // As large as a pipe: after the command has ended, one read fetches all that it had written.
    std::array<char, 65'536> buffer{};
    bool ended = false;
    while (!ended) {
        if (cancelled && *cancelled)
            ::kill(process, SIGKILL); // not yet waited for, so that the number is still its own
        std::array<pollfd, 2> waiting{pollfd{pipe, POLLIN, 0}, pollfd{end.get(), POLLIN, 0}};
        if (::poll(waiting.data(), waiting.size(), cancelled ? lookEveryMilliseconds : -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        ended = waiting[1].revents != 0;
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
            break;
        if (count > 0)
            output.append(buffer.data(), std::min<qsizetype>(count, kept - output.size()));
    }
    return output;
}

} // namespace

LinuxProcessLauncher::LinuxProcessLauncher() {
    struct sigaction action {};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        ::signal(SIGCHLD, SIG_DFL);
}

std::shared_ptr<LaunchedProcess> LinuxProcessLauncher::launch(const ProcessRequest& request,
                                                              TerminationHandler onTermination) {
    const UniqueFd standardOutput = openLog(request.standardOutput);
    const UniqueFd standardError = openLog(request.standardError);
    std::promise<std::shared_ptr<SpawnedProcess>> promise;
    auto started = promise.get_future();
    try {
        std::thread([spawnRequest = SpawnRequest{.executable = request.executable,
                                                 .arguments = request.arguments,
                                                 .environment = request.environment,
                                                 .standardOutput = standardOutput.get(),
                                                 .standardError = standardError.get(),
                                                 .session = SpawnSession::own},
                     onTermination = std::move(onTermination)](
                        auto result) { spawnAndReap(spawnRequest, std::move(result), onTermination); },
                    std::move(promise))
            .detach();
    } catch (const std::system_error& error) {
        throw LaunchError(systemErrorText(error.code().value()));
    }
    return started.get();
}

CommandResult LinuxProcessLauncher::run(const QString& executable, const QStringList& arguments,
                                        const CommandCancellation& cancelled, const ProcessEnvironment& environment) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw LaunchError(systemErrorText(errno));
    const UniqueFd readEnd(ends[0]);
    ::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK);
    UniqueFd writeEnd = aboveStandardStreams(UniqueFd(ends[1]));
    const pid_t process = spawn({.executable = executable,
                                 .arguments = arguments,
                                 .environment = environment,
                                 .standardOutput = writeEnd.get(),
                                 .standardError = writeEnd.get(),
                                 .session = SpawnSession::inherited});
    writeEnd.reset();
    const QByteArray output = readOutput(readEnd.get(), process, cancelled);
    return {.status = waitForEnd(process), .output = QString::fromUtf8(output)};
}

} // namespace corvane
