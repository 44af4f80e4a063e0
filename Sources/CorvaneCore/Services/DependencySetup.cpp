#include "CorvaneCore/Services/DependencySetup.h"

#include "CorvaneContract/Text/UserText.h"

#include <utility>

namespace corvane {

namespace {

const QString searchPath = QStringLiteral("/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin");
const QString env = QStringLiteral("/usr/bin/env");
const QString uv = QStringLiteral("uv");

constexpr int statusCancelled = 1;
// As env and pkexec have them: the user did not allow it, or there is no such program.
constexpr int statusNotAllowed = 126;
constexpr int statusNotFound = 127;

QStringList whisperCommand(DependencySetup::Network network) {
    QStringList words{uv, QStringLiteral("run")};
    if (network == DependencySetup::Network::offline)
        words << QStringLiteral("--offline");
    return words << QStringLiteral("--no-project") << QStringLiteral("--with") << QStringLiteral("whispermlx")
                 << QStringLiteral("python") << QStringLiteral("-m") << QStringLiteral("whispermlx")
                 << QStringLiteral("--help");
}

QString handInstallText(const QStringList& command) {
    return UserText::tr("To install the packages yourself, run in a terminal: %1").arg(command.join(QLatin1Char(' ')));
}

QString withoutUvText(const QString& program) {
    return UserText::tr("uv is not among the packages of %1. See https://docs.astral.sh/uv/ for how to "
                        "get it into /usr/local/bin, then click Check Again.")
        .arg(program);
}

} // namespace

DependencySetup::DependencySetup(std::shared_ptr<ProcessLauncher> processes, CommandCancellation cancelled)
    : m_processes(std::move(processes)), m_cancelled(std::move(cancelled)) {}

CommandRunResult DependencySetup::run(const QString& executable, const QStringList& arguments) const {
    if (m_cancelled && *m_cancelled)
        return {.status = statusCancelled, .output = {}};
    try {
        return m_processes->run(executable, arguments, m_cancelled, {{QStringLiteral("PATH"), searchPath}});
    } catch (const LaunchError& error) {
        return {.status = 1, .output = error.text()};
    }
}

CommandRunResult DependencySetup::runTool(const QStringList& words) const {
    return run(env, words);
}

bool DependencySetup::commandExists(const QString& name) const {
    const QString question = QStringLiteral("command -v %1 >/dev/null 2>&1").arg(name);
    const std::int32_t status = runTool({QStringLiteral("zsh"), QStringLiteral("-lc"), question}).status;
    // zsh answers a command that it does not find with 1, so that this can only be the absence of zsh itself.
    if (status == statusNotFound)
        return runTool({QStringLiteral("sh"), QStringLiteral("-lc"), question}).status == 0;
    return status == 0;
}

bool DependencySetup::verifyWhisperMLX(Network network) const {
    return runTool(whisperCommand(network)).status == 0;
}

std::optional<PackageManager> DependencySetup::distributionManager() const {
    for (const PackageManager& manager : distributionManagers()) {
        if (commandExists(manager.program))
            return manager;
    }
    return std::nullopt;
}

QStringList DependencySetup::missingBrewFormulae(const ReadyTools& known) const {
    const bool hasPython = commandExists(QStringLiteral("python3"));
    const bool hasUv = commandExists(uv);
    const bool hasFfmpeg = commandExists(QStringLiteral("ffmpeg"));
    QStringList formulae;
    if (!known.python && !hasPython)
        formulae << QStringLiteral("python");
    if (!known.uv && !hasUv)
        formulae << uv;
    if (!known.ffmpeg && !hasFfmpeg)
        formulae << QStringLiteral("ffmpeg");
    return formulae;
}

QString DependencySetup::installMissingTools(const ReadyTools& known) const {
    QStringList log;
    const QStringList formulae = missingBrewFormulae(known);
    if (!formulae.isEmpty())
        log = installPackages(formulae);
    // The statuses are not looked at: the look at the tools that follows an installation says what worked.
    if (commandExists(uv)) {
        const QString output = runTool(whisperCommand(Network::online)).output;
        log << (output.isEmpty() ? UserText::tr("whispermlx verified") : output);
    }
    return log.join(QLatin1Char('\n')).trimmed();
}

// Returns what is to be told. Where there is no package manager at all Homebrew's own failure says so.
QStringList DependencySetup::installPackages(const QStringList& formulae) const {
    const PackageManager& homebrew = homebrewManager();
    const PackageManager manager =
        commandExists(homebrew.program) ? homebrew : distributionManager().value_or(homebrew);
    QStringList packages;
    for (const QString& formula : formulae) {
        if (const QString package = manager.package(formula); !package.isEmpty())
            packages << package;
    }
    QStringList log;
    if (!packages.isEmpty()) {
        const CommandRunResult result = runTool(manager.install + packages);
        log << result.output;
        const bool wasRefused = result.status == statusNotAllowed || result.status == statusNotFound;
        if (manager.install != manager.handInstall && wasRefused)
            log << handInstallText(manager.handInstall + packages);
    }
    if (formulae.contains(uv) && manager.uv.isEmpty())
        log << withoutUvText(manager.program);
    return log;
}

} // namespace corvane
