// What does Corvane cost while nobody uses it? The whole model over the services of the real platform, with every clock
// running and a library of 200 meetings with runs, for a minute each, or for as many seconds as the first argument
// says: on a desktop where nothing is in front, with a Chromium in front, and with that one stopped. The limits are 0.5
// % of a core and a pause of the main loop of 20 ms; the peer is the same loop with two clocks that do nothing.
#include "Benchmarks/ManyMeetings.h"
#include "Benchmarks/Measuring.h"
#include "Support/MainLoop.h"
#include "Support/PrivateDesktop.h"

#include "CorvaneApp/Composition/LinuxServices.h"
#include "CorvaneApp/Model/AppModel.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopFrontmostApplicationReader.h"

#include <QElapsedTimer>
#include <QTimer>

#include <signal.h>

#include <cstdlib>

using namespace corvane;

namespace {

constexpr int meetings = 200;
constexpr double limitPercent = 0.5;
constexpr double limitPauseMilliseconds = 20;
constexpr std::chrono::milliseconds tickTime{2};
constexpr double settlingSeconds = 4; // the first looks read everything

struct Figures {
    double percent = 0;      // of a core
    double longestPause = 0; // milliseconds of the main loop
};

void runLoop(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// The tick that finds the pauses costs more than what is measured, so that it has a time of its own.
Figures measure(double seconds) {
    Figures figures;
    const double before = processorMilliseconds();
    runLoop(seconds);
    figures.percent = (processorMilliseconds() - before) / (10 * seconds);

    QTimer tick;
    QElapsedTimer sinceTick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        figures.longestPause = std::max(figures.longestPause, static_cast<double>(sinceTick.nsecsElapsed()) / 1e6);
        sinceTick.restart();
    });
    tick.setTimerType(Qt::PreciseTimer);
    tick.start(tickTime);
    sinceTick.start();
    runLoop(seconds);
    return figures;
}

Figures measurePeer(double seconds) {
    QTimer each1;
    QTimer each2;
    QObject::connect(&each1, &QTimer::timeout, [] {});
    QObject::connect(&each2, &QTimer::timeout, [] {});
    each1.start(std::chrono::seconds(1));
    each2.start(std::chrono::seconds(2));
    return measure(seconds);
}

bool print(const char* what, const Figures& figures, const Figures& peer) {
    std::printf("%-22s %7.3f %% of a core | limit %4.1f %%, ratio %.2f | empty clocks %.3f %%\n", what, figures.percent,
                limitPercent, figures.percent / limitPercent, peer.percent);
    std::printf("%-22s %7.2f ms longest pause | limit %3.0f ms, ratio %.2f | empty clocks %.2f ms\n", "",
                figures.longestPause, limitPauseMilliseconds, figures.longestPause / limitPauseMilliseconds,
                peer.longestPause);
    std::fflush(stdout);
    return figures.percent < limitPercent && figures.longestPause < limitPauseMilliseconds;
}

// No service of the real platform may reach the user's own files or desktop.
void confine(const QTemporaryDir& home) {
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, home.path().toUtf8());
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK"})
        qunsetenv(name);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 60;
    const QTemporaryDir home;
    confine(home);
    const DataDirectoryBuilder data;
    makeMeetings(data, meetings);
    const Figures peer = measurePeer(seconds / 4);

    if (!PrivateDesktop::isInstalled()) {
        const AppModel model(data.paths, makeLinuxServices());
        runLoop(settlingSeconds);
        return print("No desktop", measure(seconds), peer) ? 0 : 1;
    }
    PrivateDesktop desktop(PrivateDesktop::Accessibility::on);
    qputenv("DISPLAY", desktop.session().x11Display);
    const AppModel model(data.paths, makeLinuxServices());
    runLoop(settlingSeconds);
    bool isWithin = print("Nothing in front", measure(seconds), peer);
    const auto browser = desktop.browse({QStringLiteral("data:text/html,<title>Page</title><p>text")});
    DesktopFrontmostApplicationReader reader(desktop.session());
    const auto isThere = [&reader] {
        const auto facts = loopedResult(reader.read());
        return facts && facts->activeTab;
    };
    if (!loopUntil(isThere)) {
        std::printf("The browser does not come to the front.\n");
        return 1;
    }
    runLoop(settlingSeconds);
    isWithin = print("A browser in front", measure(seconds), peer) && isWithin;
    ::kill(static_cast<pid_t>(browser->processID()), SIGSTOP);
    isWithin = print("The same, stopped", measure(seconds), peer) && isWithin;
    return isWithin ? 0 : 1;
}
