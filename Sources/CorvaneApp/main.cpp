// The application: it builds the real platform and hands it to the model. A debug command is answered before any of
// that exists.
#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneApp/Composition/TerminationSignals.h"
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/Window/DashboardWindowController.h"
#include "CorvaneApp/Views/Window/PanelCallNotices.h"
#include "CorvaneContract/Process/Locale.h"
#include "CorvaneCore/Services/DebugCommand.h"
#include "CorvanePlatform/Null/FixedDesktopPreferences.h"

#include <QApplication>
#include <QStandardPaths>

#include <iostream>

namespace {

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

int runApplication(int& argc, char** argv, const corvane::AppPaths& paths, corvane::AppServices services) {
    QCoreApplication::setApplicationName(QStringLiteral("Corvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const corvane::TerminationSignals signals;
    QObject::connect(&signals, &corvane::TerminationSignals::received, &application, &QCoreApplication::quit);
    const auto clock = services.clock;
    const auto preferences = std::make_shared<corvane::FixedDesktopPreferences>();
    services.callNotices =
        corvane::callNoticesFor(QGuiApplication::platformName(), std::move(services.callNotices), preferences);
    corvane::AppModel model(paths, std::move(services));
    corvane::DashboardWindowController window(model, clock, preferences, windowStateFile());
    window.show();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    corvane::ensureUtf8Locale();
    const corvane::AppPaths paths(std::nullopt);
    corvane::AppServices services = corvane::makeLinuxServices();
    const corvane::DebugCommand command{*services.tokenStore, *services.workspace, services.environment, std::cin,
                                        std::cout};
    if (const auto status = command.run(argumentList(argc, argv), paths))
        return *status;
    return runApplication(argc, argv, paths, std::move(services));
}
