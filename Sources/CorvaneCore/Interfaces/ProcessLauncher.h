// Starting other programs. A launched process does not die with its launcher: it gets a session of its own, so that
// neither the end of the application nor a closed terminal nor Ctrl-C reaches it.
#pragma once

#include "CorvaneContract/Error.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace corvane {

class LaunchError : public Error {
public:
    using Error::Error;
};

using ProcessEnvironment = std::map<QString, QString>;

struct ProcessRequest {
    QString executable;    // a path; a bare name is not searched for
    QStringList arguments; // without the executable itself; passed as they are, no shell
    // Added to the application's own environment, replacing keys of the same name. Empty: the application's as it is.
    ProcessEnvironment environment;
    // Existing files, opened for writing from their start. Standard input is the null device.
    QString standardOutput;
    QString standardError;
};

// A launched process. Thread-safe.
class LaunchedProcess {
public:
    virtual ~LaunchedProcess() = default;
    [[nodiscard]] virtual std::int64_t processID() const = 0;
    [[nodiscard]] virtual bool isRunning() const = 0;
    // The exit status, or 128 plus the number of the signal that ended it; 0 while it runs.
    [[nodiscard]] virtual std::int32_t terminationStatus() const = 0;
};

// Set by whoever no longer wants a command's result. An empty one is never set.
using CommandCancellation = std::shared_ptr<const std::atomic<bool>>;

struct CommandResult {
    std::int32_t status = 0; // as LaunchedProcess::terminationStatus
    QString output;          // standard output and standard error in one, as UTF-8
};

class ProcessLauncher {
public:
    // Called once, on a thread of the launcher's own, when the process has ended; also long after its launcher let go.
    using TerminationHandler = std::function<void(std::int32_t terminationStatus)>;

    virtual ~ProcessLauncher() = default;

    // Throws LaunchError if a log file cannot be opened or the process cannot be started, and then nothing runs and the
    // handler is never called. The text is the system's own: “No such file or directory”, with the log file's name and
    // a colon before it where a log file is at fault. The handler must not throw; an empty one is fine.
    [[nodiscard]] virtual std::shared_ptr<LaunchedProcess> launch(const ProcessRequest& request,
                                                                  TerminationHandler onTermination) = 0;

    // Runs a command to its end and returns what it said, the first MiB of it. Blocks: never on the main thread. It is
    // no launched process: it shares the session, so that Ctrl-C ends it too. Throws LaunchError if it cannot be
    // started. A cancelled command is killed soon after, and its status says so. `environment` is as in ProcessRequest.
    [[nodiscard]] virtual CommandResult run(const QString& executable, const QStringList& arguments,
                                            const CommandCancellation& cancelled = {},
                                            const ProcessEnvironment& environment = {}) = 0;
};

} // namespace corvane
