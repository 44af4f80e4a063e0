// Opens files, folders and pages through xdg-open, which asks whatever desktop runs. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Interfaces/Workspace.h"

namespace corvane {

class XdgWorkspace final : public Workspace {
public:
    // Takes note of the umask, which the opened programs get: to be made before the process makes its own private.
    // `launcher` must outlive it.
    explicit XdgWorkspace(ProcessLauncher& launcher);

    bool open(const QString& pathOrAddress) override;

private:
    ProcessLauncher& m_launcher;
    QString m_umask; // octal
};

} // namespace corvane
