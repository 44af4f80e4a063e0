// Where the worker executable is looked for. A small value, made afresh for each use; any thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <QString>

#include <functional>
#include <optional>

namespace corvane {

[[nodiscard]] bool isExecutableFile(const QString& path);

struct WorkerLocator {
    ProcessEnvironment environment;
    QString currentDirectory;
    std::optional<QString> bundleResourceDirectory; // where the running program's own files lie, if anywhere
    std::function<bool(const QString&)> fileExists = isExecutableFile;

    // The first of: $CORVANE_WORKER_PATH; worker/bin/corvane-worker in the resource directory; a virtual environment
    // of a checkout, relative to the current directory. A wrong override is no error. Nothing if none is there.
    [[nodiscard]] std::optional<QString> resolve() const;
};

} // namespace corvane
