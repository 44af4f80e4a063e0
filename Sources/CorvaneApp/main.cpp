// The application: it builds the real platform and hands it in. A debug command is answered before any of that exists,
// and a start beside a process that runs already hands over to that one before anything is made.
#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneApp/Composition/TerminationSignals.h"
#include "CorvaneApp/Shell/Application.h"
#include "CorvaneApp/Shell/SingleInstance.h"
#include "CorvaneApp/Translations/Translations.h"
#include "CorvaneApp/Views/Window/PanelCallNotices.h"
#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Process/Locale.h"
#include "CorvaneCore/Services/DebugCommand.h"
#include "CorvanePlatform/Linux/Desktop/DesktopBus.h"
#include "CorvanePlatform/Linux/Desktop/DesktopPowerManagement.h"
#include "CorvanePlatform/Linux/Desktop/PortalDesktopPreferences.h"

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QStandardPaths>
#include <QThreadPool>

#include <unistd.h>

#include <iostream>
#include <thread>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

constexpr auto answerPatience = 10s;    // one that answered later would have been asked twice
constexpr auto instancePatience = 12s;  // for one that is just ending to end
constexpr auto instanceInterval = 20ms; // between two attempts
constexpr int poolMilliseconds = 200;

QStringList argumentList(int count, char** values) {
    QStringList arguments;
    for (int i = 0; i < count; ++i)
        arguments.append(QString::fromLocal8Bit(values[i]));
    return arguments;
}

// Where the window's size is kept; it is no setting, and losing it costs nothing.
QString windowStateFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Corvane/window.ini");
}

int complain(const QString& words) {
    std::cerr << "corvane: " << words.toStdString() << std::endl;
    return EXIT_FAILURE;
}

bool hasDisplay() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    }
    return false;
}

QtMessageHandler ordinaryMessages = nullptr;

// The toolkit would end the process like a crash, with the advice to install it anew.
void tellMissingDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtFatalMsg) {
        ordinaryMessages(type, context, text);
        return;
    }
    complain(QStringLiteral("the display cannot be used; corvanectl works without one"));
    ::_exit(EXIT_FAILURE);
}

// Taken out of the environment: they are good for one window of this start, and no program started later is meant.
QString taken(const char* variable) {
    QString value = qEnvironmentVariable(variable);
    qunsetenv(variable);
    return value;
}

// The status to end with, or nothing if this process is the one that is to run.
std::optional<int> settleInstance(SingleInstance& instance, StartRequest request) {
    if (instance.claim())
        return std::nullopt;
    request.activationToken = taken("XDG_ACTIVATION_TOKEN");
    request.startupID = taken("DESKTOP_STARTUP_ID");
    const auto end = std::chrono::steady_clock::now() + instancePatience;
    while (std::chrono::steady_clock::now() < end) {
        if (instance.handOver(request, answerPatience))
            return EXIT_SUCCESS;
        std::this_thread::sleep_for(instanceInterval);
        if (instance.claim())
            return std::nullopt;
    }
    return complain(QStringLiteral("Corvane runs already but does not answer"));
}

// The command line as the toolkit wants it, and the languages that the user reads, the one most wished for first.
struct Start {
    int& argc;
    char** argv = nullptr;
    QStringList languages;
};

int runApplication(const Start& start, const AppPaths& paths, AppServices services, SingleInstance& instance,
                   const StartRequest& request) {
    // The toolkit would otherwise start a bus of its own, which nobody ends again.
    if (DesktopBus::address(DesktopBus::Which::session).isEmpty())
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QCoreApplication::setApplicationName(QStringLiteral("Corvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("corvane"));
    ordinaryMessages = qInstallMessageHandler(tellMissingDisplay);
    const QApplication toolkit(start.argc, start.argv);
    qInstallMessageHandler(nullptr);
    const Translations translations(start.languages);
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("corvane"), QIcon(QStringLiteral(":/corvane.svg"))));
    QApplication::setQuitOnLastWindowClosed(false);
    const TerminationSignals signals;
    int status = EXIT_SUCCESS;
    {
        const auto preferences = std::make_shared<PortalDesktopPreferences>();
        services.callNotices =
            callNoticesFor(QGuiApplication::platformName(), std::move(services.callNotices), preferences);
        Application application(paths, services,
                                {preferences, std::make_shared<DesktopPowerManagement>(), windowStateFile()});
        QObject::connect(&signals, &TerminationSignals::received, &application, &Application::endSoon);
        QObject::connect(&instance, &SingleInstance::requested, &application, &Application::take);
        QObject::connect(&application, &Application::ending, &instance, &SingleInstance::close);
        // Not quit(), which a window that is only minimised by closing would refuse.
        QObject::connect(
            &application, &Application::ended, &application, [] { QCoreApplication::exit(EXIT_SUCCESS); },
            Qt::QueuedConnection);
        instance.listen();
        application.start(request);
        status = QCoreApplication::exec();
    }
    // What is still being joined leaves every chunk where it is, and is joined at the next start.
    if (!QThreadPool::globalInstance()->waitForDone(poolMilliseconds))
        ::_exit(status);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    // Before the locale is made another: one that the machine lacks still says which language the user reads.
    const QStringList languages = QLocale::system().uiLanguages();
    ensureUtf8Locale();
    const AppPaths paths(std::nullopt);
    AppServices services = makeLinuxServices();
    const QStringList arguments = argumentList(argc, argv);
    const DebugCommand debug{*services.tokenStore, *services.workspace, services.environment, std::cin, std::cout};
    if (const auto status = debug.run(arguments, paths))
        return *status;
    const StartCommand command = parseStartCommand(arguments.mid(1), services.currentDirectory);
    switch (command.kind) {
    case StartCommand::Kind::help:
        std::cout << startHelp().toStdString();
        return EXIT_SUCCESS;
    case StartCommand::Kind::version:
        std::cout << "corvane " CORVANE_VERSION "\n";
        return EXIT_SUCCESS;
    case StartCommand::Kind::refuse:
        return complain(command.words);
    case StartCommand::Kind::start:
        break;
    }
    if (const auto fault = fileFault(command.request.files))
        return complain(*fault);
    try {
        paths.createDirectories(); // their place in the file system is what tells one process from another
    } catch (const FileError&) {
        // The operations that need them say so.
    }
    SingleInstance instance(SingleInstance::runtimeDirectory(), paths.root);
    if (const auto status = settleInstance(instance, command.request))
        return *status;
    if (!hasDisplay())
        return complain(QStringLiteral("there is no display to show a window on; corvanectl works without one"));
    return runApplication({argc, argv, languages}, paths, std::move(services), instance, command.request);
}
