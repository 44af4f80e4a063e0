// The command-line tools that a worker of the user's own may need: which commands tell whether they are there, and
// which get them. Every operation runs commands to their end, one after the other: never on the main thread, any other
// will do. Nothing fails: what cannot be started is a command that ended badly.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Services/PackageManagers.h"

#include <memory>
#include <optional>

namespace corvane {

using CommandRunResult = CommandResult;

// What an earlier look found.
struct ReadyTools {
    bool python = false;
    bool uv = false;
    bool ffmpeg = false;
};

class DependencySetup {
public:
    // The command under way is ended soon after `cancelled` is set, and no other is started.
    DependencySetup(std::shared_ptr<ProcessLauncher> processes, CommandCancellation cancelled);

    // Under a PATH of its own, whatever the application's is. What cannot be started has the status 1, and the system's
    // words for its output.
    [[nodiscard]] CommandRunResult run(const QString& executable, const QStringList& arguments) const;
    // Asks the user's login shell; without zsh, the shell that every system has.
    [[nodiscard]] bool commandExists(const QString& name) const;
    // Whether the transcription package starts. Offline nothing is fetched for it.
    enum class Network { offline, online };
    [[nodiscard]] bool verifyWhisperMLX(Network network) const;
    // The first that is there; Homebrew is not looked for.
    [[nodiscard]] std::optional<PackageManager> distributionManager() const;
    // "python", "uv", "ffmpeg", in this order: those that are neither known nor found now.
    [[nodiscard]] QStringList missingBrewFormulae(const ReadyTools& known) const;
    // Gets what is missing and returns what the commands said.
    [[nodiscard]] QString installMissingTools(const ReadyTools& known) const;

private:
    [[nodiscard]] CommandRunResult runTool(const QStringList& words) const;
    [[nodiscard]] QStringList installPackages(const QStringList& formulae) const;

    std::shared_ptr<ProcessLauncher> m_processes;
    CommandCancellation m_cancelled;
};

} // namespace corvane
