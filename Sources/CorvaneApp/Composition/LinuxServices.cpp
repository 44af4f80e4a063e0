#include "CorvaneApp/Composition/LinuxServices.h"

#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"
#include "CorvanePlatform/Linux/Desktop/XdgWorkspace.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"
#include "CorvanePlatform/Linux/Secrets/KeychainTokenStore.h"
#include "CorvanePlatform/Linux/Settings/FileUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>

namespace corvane {

namespace {

ProcessEnvironment ownEnvironment() {
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    ProcessEnvironment environment;
    for (const QString& key : own.keys())
        environment.emplace(key, own.value(key));
    return environment;
}

// The installed tree and the build tree have the same shape. Asked of the kernel, as a program may be started through
// a link from anywhere.
std::optional<QString> resourceDirectory() {
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    if (executable.isEmpty())
        return std::nullopt;
    return QDir::cleanPath(executable + QStringLiteral("/../../lib/corvane"));
}

} // namespace

AppServices makeLinuxServices() {
    AppServices services;
    services.tokenStore = std::make_shared<KeychainTokenStore>();
    services.defaults = std::make_shared<FileUserDefaults>(FileUserDefaults::productionPath());
    services.files = std::make_shared<LinuxFileTree>();
    services.processes = std::make_shared<LinuxProcessLauncher>();
    services.audioFiles = std::make_shared<FFmpegAudioFileInspector>();
    services.workspace = std::make_shared<XdgWorkspace>();
    services.clock = std::make_shared<SystemClock>();
    services.environment = ownEnvironment();
    services.currentDirectory = QDir::currentPath();
    services.bundleResourceDirectory = resourceDirectory();
    return services;
}

} // namespace corvane
