// What does watching the front of the desktop cost? A real Chromium is in front, with its accessibility on, and is
// looked at each 2 s, for a minute or for as many seconds as the first argument says, and then half as long with the
// browser stopped. The limits are 0.5 % of a core and a pause of the main loop of 20 ms; the peer for the pause is the
// same loop without any look.
#include "Benchmarks/Measuring.h"
#include "Support/MainLoop.h"
#include "Support/PrivateDesktop.h"

#include "CorvanePlatform/Linux/Frontmost/DesktopFrontmostApplicationReader.h"

#include <QElapsedTimer>
#include <QTimer>

#include <signal.h>

#include <cstdio>
#include <cstdlib>

using namespace corvane;

namespace {

constexpr double limitPercent = 0.5;
constexpr double limitPauseMilliseconds = 20;
constexpr std::chrono::milliseconds tickTime{2};
constexpr std::chrono::seconds pollTime{2};

enum class Ticking { no, yes };

struct Figures {
    int polls = 0;
    int tabs = 0;
    double longestAnswer = 0;
    double longestPause = 0; // only of a loop that ticks
    double processor = 0;
};

// The tick that finds the pauses costs more than the looks, so that cost and pauses are measured one after the other.
Figures watch(DesktopFrontmostApplicationReader* reader, double seconds, Ticking ticking) {
    Figures figures;
    QElapsedTimer run;
    QElapsedTimer sinceTick;
    QTimer tick;
    QTimer poll;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const double pause = static_cast<double>(sinceTick.nsecsElapsed()) / 1e6;
        figures.longestPause = std::max(figures.longestPause, pause);
        sinceTick.restart();
    });
    const auto look = [&] {
        ++figures.polls;
        QElapsedTimer answer;
        answer.start();
        reader->read().then(&poll, [&figures, answer](const std::optional<FrontmostApplication>& facts) {
            figures.tabs += facts && facts->activeTab ? 1 : 0;
            figures.longestAnswer = std::max(figures.longestAnswer, static_cast<double>(answer.nsecsElapsed()) / 1e6);
        });
    };
    QObject::connect(&poll, &QTimer::timeout, look);
    tick.setTimerType(Qt::PreciseTimer);
    if (reader)
        poll.start(pollTime);
    if (ticking == Ticking::yes)
        tick.start(tickTime);
    const double before = processorMilliseconds();
    sinceTick.start();
    run.start();
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
    figures.processor = processorMilliseconds() - before;
    return figures;
}

bool print(const char* what, const Figures& cost, const Figures& pauses, double seconds, double peerPause) {
    const double percent = cost.processor / (10 * seconds);
    std::printf("%-26s %3d polls, %3d with a tab, answers within %6.1f ms\n", what, cost.polls, cost.tabs,
                std::max(cost.longestAnswer, pauses.longestAnswer));
    std::printf("%-26s %8.3f %% of a core | limit %4.1f %%, ratio %.2f | %.2f ms per poll\n", "", percent, limitPercent,
                percent / limitPercent, cost.processor / std::max(cost.polls, 1));
    std::printf("%-26s %8.2f ms longest pause | limit %3.0f ms, ratio %.2f | without looks %.2f ms\n", "",
                pauses.longestPause, limitPauseMilliseconds, pauses.longestPause / limitPauseMilliseconds, peerPause);
    std::fflush(stdout);
    return percent < limitPercent && pauses.longestPause < limitPauseMilliseconds;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 60;
    PrivateDesktop desktop(PrivateDesktop::Accessibility::on);
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
    const double peerPause = watch(nullptr, seconds / 4, Ticking::yes).longestPause;
    const Figures cost = watch(&reader, seconds, Ticking::no);
    const Figures pauses = watch(&reader, seconds / 2, Ticking::yes);
    bool isWithin = print("A browser in front", cost, pauses, seconds, peerPause) &&
                    cost.tabs + 1 >= cost.polls; // the last answer may come after the end

    ::kill(static_cast<pid_t>(browser->processID()), SIGSTOP);
    const Figures stoppedCost = watch(&reader, seconds / 2, Ticking::no);
    const Figures stoppedPauses = watch(&reader, seconds / 2, Ticking::yes);
    isWithin = print("The same, stopped", stoppedCost, stoppedPauses, seconds / 2, peerPause) && isWithin;
    return isWithin ? 0 : 1;
}
