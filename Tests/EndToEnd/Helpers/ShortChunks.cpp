// corvanectl with chunks of as many seconds as CHUNK_SECONDS says, so that a test of seconds meets many rotations.
#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneContract/Process/Locale.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"

#include <QCoreApplication>

using namespace corvane;
using namespace corvane::ctl;

int main(int argc, char** argv) {
    prepareStandardStreams();
    ensureUtf8Locale();
    const QCoreApplication application(argc, argv);
    Terminal terminal;
    try {
        AppServices services = makeLinuxServices();
        services.chunkDurationSeconds = qEnvironmentVariable("CHUNK_SECONDS").toDouble();
        Session session(parseCommandLine(QCoreApplication::arguments().mid(1), commandForms()), std::move(services),
                        terminal);
        return terminal.finish(static_cast<int>(runCommand(session)));
    } catch (const Error& error) {
        terminal.complain(error.text());
        return static_cast<int>(ExitStatus::failed);
    }
}
