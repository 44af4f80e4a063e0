#include "CorvanePlatform/Linux/Desktop/XdgWorkspace.h"

#include <QStandardPaths>

#include <sys/stat.h>

namespace corvane {

namespace {

QString currentUmask() {
    // The only call that tells it changes it; nothing else runs yet when a workspace is made.
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
    ::umask(mask);
    return QStringLiteral("0%1").arg(mask, 0, 8);
}

} // namespace

XdgWorkspace::XdgWorkspace(ProcessLauncher& launcher) : m_launcher(launcher), m_umask(currentUmask()) {}

bool XdgWorkspace::open(const QString& pathOrAddress) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (program.isEmpty() || pathOrAddress.isEmpty())
        return false;
    // A name with a leading hyphen would be an option.
    const QString argument =
        pathOrAddress.startsWith(QLatin1Char('-')) ? QStringLiteral("./") + pathOrAddress : pathOrAddress;
    const QString nowhere = QStringLiteral("/dev/null");
    try {
        static_cast<void>(
            m_launcher.launch({.executable = QStringLiteral("/bin/sh"),
                               .arguments = {QStringLiteral("-c"), QStringLiteral("umask \"$0\"; exec \"$@\""), m_umask,
                                             program, argument},
                               .environment = {},
                               .standardOutput = nowhere,
                               .standardError = nowhere},
                              {}));
        return true;
    } catch (const LaunchError& error) {
        qWarning("xdg-open could not be started: %s", error.what());
        return false;
    }
}

} // namespace corvane
