// Programs started by posix_spawn. Every launched process has a thread of its own that waits for it, holds nothing of
// the launcher and calls the termination handler. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

namespace corvane {

class LinuxProcessLauncher final : public ProcessLauncher {
public:
    // An ignored SIGCHLD, which a careless parent may hand down, is set back to its default: the system would otherwise
    // throw every exit status away.
    LinuxProcessLauncher();

    [[nodiscard]] std::shared_ptr<LaunchedProcess> launch(const ProcessRequest& request,
                                                          TerminationHandler onTermination) override;
    [[nodiscard]] CommandResult run(const QString& executable, const QStringList& arguments,
                                    const CommandCancellation& cancelled = {},
                                    const ProcessEnvironment& environment = {}) override;
};

} // namespace corvane
