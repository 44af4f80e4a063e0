// Starting a program by posix_spawn with nothing of this process in it but what is named here. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <sys/types.h>

namespace corvane {

enum class SpawnSession { own, inherited };

struct SpawnRequest {
    QString executable;
    QStringList arguments;
    ProcessEnvironment environment; // added to the own environment
    int standardOutput = -1;        // open descriptors of 3 or above; the caller keeps and closes them
    int standardError = -1;
    SpawnSession session = SpawnSession::own;
};

// The new process: standard input is the null device, no other descriptor is open, every signal has its default
// disposition and none is blocked. The caller has to wait for it. Throws LaunchError, also when the program cannot be
// executed.
[[nodiscard]] pid_t spawn(const SpawnRequest& request);

// What is reported of a process whose status some other code of this application has collected: a failure, as nothing
// says that it succeeded.
inline constexpr std::int32_t statusUnknown = 255;

// Blocks until the process has ended. Its exit status, or 128 plus the number of the signal that ended it.
[[nodiscard]] std::int32_t waitForEnd(pid_t process);

// The system's words for an errno.
[[nodiscard]] QString systemErrorText(int error);

} // namespace corvane
