// The application: it builds the real platform and hands it to the model. A debug command is answered before any of
// that exists.
#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneApp/Composition/TerminationSignals.h"
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Process/Locale.h"
#include "CorvaneCore/Services/DebugCommand.h"

#include <QCoreApplication>

#include <iostream>

namespace {

QStringList argumentList(int count, char** values) {
    QStringList arguments;
    for (int i = 0; i < count; ++i)
        arguments.append(QString::fromLocal8Bit(values[i]));
    return arguments;
}

int runApplication(int& argc, char** argv, const corvane::AppPaths& paths, corvane::AppServices services) {
    QCoreApplication::setApplicationName(QStringLiteral("Corvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    QCoreApplication application(argc, argv);
    const corvane::TerminationSignals signals;
    QObject::connect(&signals, &corvane::TerminationSignals::received, &application, &QCoreApplication::quit);
    const corvane::AppModel model(paths, std::move(services));
    std::cerr << "corvane: this build has no window yet; corvanectl imports, processes, lists and shows meetings, "
                 "see `corvanectl --help`"
              << std::endl;
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
