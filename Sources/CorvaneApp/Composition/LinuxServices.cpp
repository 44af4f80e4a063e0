#include "CorvaneApp/Composition/LinuxServices.h"

#include "CorvaneCore/Services/Ollama.h"
#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"
#include "CorvanePlatform/Linux/Audio/FFmpegAudioPlayers.h"
#include "CorvanePlatform/Linux/Audio/PulseAudioInputs.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"
#include "CorvanePlatform/Linux/Desktop/DesktopCallNotices.h"
#include "CorvanePlatform/Linux/Desktop/XdgWorkspace.h"
#include "CorvanePlatform/Linux/Doctor/LinuxMachineProbe.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopFrontmostApplicationReader.h"
#include "CorvanePlatform/Linux/Network/QtHttpClient.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"
#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"
#include "CorvanePlatform/Linux/Settings/FileUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QSysInfo>

#include <sys/stat.h>

#include <csignal>

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

// What the build was told, and over it what a packager put beside the program.
InfoDictionary ownInfo(const std::optional<QString>& resources) {
    InfoDictionary info{{infoKeys::version, QStringLiteral(CORVANE_VERSION)},
                        {infoKeys::build, QStringLiteral(CORVANE_BUILD_NUMBER)},
                        {infoKeys::updateManifestURL, QStringLiteral(CORVANE_UPDATE_MANIFEST_URL)},
                        {infoKeys::updateSystem, QStringLiteral(CORVANE_UPDATE_SYSTEM)}};
    return resources ? withEntriesOfFile(std::move(info), *resources + QLatin1Char('/') + infoFile) : info;
}

void addOwnFacts(AppServices& services) {
    services.bundleResourceDirectory = resourceDirectory();
    services.info = ownInfo(services.bundleResourceDirectory);
    services.systemVersion = presentSystemVersion(QSysInfo::productType(), QSysInfo::productVersion(),
                                                  stringAt(services.info, infoKeys::updateSystem).value_or(QString()));
    services.ollamaAddress = QUrl(ollamaAddress);
    services.ollamaLocations = ollamaLocations(QDir::homePath());
    services.speechModelDirectory =
        qEnvironmentVariable("CORVANE_WORKER_MODEL_DIR", QStringLiteral(CORVANE_SPEECH_MODEL_DIR));
}

// A workspace with the launcher that it borrows.
struct OwningWorkspace {
    explicit OwningWorkspace(std::shared_ptr<ProcessLauncher> own) : launcher(std::move(own)), workspace(*launcher) {}

    std::shared_ptr<ProcessLauncher> launcher;
    XdgWorkspace workspace;
};

std::shared_ptr<Workspace> makeWorkspace(std::shared_ptr<ProcessLauncher> launcher) {
    const auto owner = std::make_shared<OwningWorkspace>(std::move(launcher));
    return {owner, &owner->workspace};
}

} // namespace

AppServices makeLinuxServices() {
    AppServices services;
    services.tokenStore = std::make_shared<KeychainTokenStore>();
    services.defaults = std::make_shared<FileUserDefaults>(FileUserDefaults::productionPath());
    services.files = std::make_shared<LinuxFileTree>();
    services.processes = std::make_shared<LinuxProcessLauncher>();
    services.audioFiles = std::make_shared<FFmpegAudioFileInspector>();
    services.audioInputs = std::make_shared<PulseAudioInputs>();
    services.waveFiles = std::make_shared<SndfileAudioFiles>();
    services.audioPlayers = std::make_shared<FFmpegAudioPlayers>();
    services.workspace = makeWorkspace(services.processes);
    services.http = std::make_shared<QtHttpClient>();
    services.clock = std::make_shared<SystemClock>();
    services.frontmostApplication = std::make_shared<DesktopFrontmostApplicationReader>();
    services.callNotices = std::make_shared<DesktopCallNotices>();
    services.machine = std::make_shared<LinuxMachineProbe>();
    services.environment = ownEnvironment();
    services.currentDirectory = QDir::currentPath();
    addOwnFacts(services);
    ::umask(S_IRWXG | S_IRWXO);
    ::signal(SIGXFSZ, SIG_IGN); // a file that may grow no more is like a full disk, no reason to die
    return services;
}

} // namespace corvane
