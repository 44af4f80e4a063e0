// corvanectl: the command line over the same model as the application's window.
#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneContract/Process/Locale.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <cstdlib>

using namespace corvane;
using namespace corvane::ctl;

namespace {

QStringList argumentList(int count, char** values) {
    QStringList arguments;
    for (int i = 1; i < count; ++i) {
        const QByteArray bytes(values[i]);
        // A name that cannot be told as text would come out as another name.
        if (!QUtf8StringView(bytes).isValidUtf8())
            throw UsageError(QStringLiteral("“%1” is not valid UTF-8").arg(visibleText(QString::fromUtf8(bytes))));
        arguments.append(QString::fromUtf8(bytes));
    }
    return arguments;
}

// Whether --help or --version was all that was asked for.
bool answered(const CommandLine& line, Terminal& terminal) {
    if (line.has(QStringLiteral("help"))) {
        const CommandForm* command = findCommand(commandForms(), line.command);
        terminal.print(command ? commandHelp(*command) : generalHelp(commandForms()));
        return true;
    }
    if (line.has(QStringLiteral("version"))) {
        terminal.print(QStringLiteral("corvanectl " CORVANE_VERSION "\n"));
        return true;
    }
    return false;
}

int run(int count, char** values, Terminal& terminal) {
    try {
        CommandLine line = parseCommandLine(argumentList(count, values), commandForms());
        if (answered(line, terminal))
            return static_cast<int>(ExitStatus::ok);
        Session session(std::move(line), makeLinuxServices(), terminal);
        return static_cast<int>(runCommand(session));
    } catch (const CtlError& error) {
        terminal.complain(error.text());
        return static_cast<int>(error.status());
    } catch (const Interrupted& interruption) {
        // Not the ordinary way out: that would wait for background work that nobody wants any more. The worker that
        // measures a voice has been called off with the session, and must not be left behind.
        constexpr int longestWaitMilliseconds = 500;
        QThreadPool::globalInstance()->waitForDone(longestWaitMilliseconds);
        std::_Exit(terminal.finish(statusOfSignal(interruption.number())));
    } catch (const Error& error) {
        terminal.complain(error.text());
        return static_cast<int>(ExitStatus::failed);
    }
}

} // namespace

int main(int argc, char** argv) {
    prepareStandardStreams();
    ensureUtf8Locale();
    QCoreApplication::setApplicationName(QStringLiteral("corvanectl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    const QCoreApplication application(argc, argv);
    Terminal terminal;
    return terminal.finish(run(argc, argv, terminal));
}
