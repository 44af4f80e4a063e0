// How long does the application take to be in the tray, and to show its window, and how much memory does it hold in
// each? On a display without graphics hardware, with a session bus and a tray of the benchmark's own, and an empty
// library. Times are medians of seven starts beside that of `corvane --version`, which is the loading of the program
// alone; memory is the proportional set size when it no longer changes. The limits are those of the house.
#include "Measuring.h"
#include "Support/FakeTray.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"
#include "Support/PrivateSessionBus.h"

#include "CorvaneContract/Files/Files.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <set>

using namespace corvane;

namespace {

constexpr int repetitions = 7;
constexpr double trayLimit = 400;   // milliseconds
constexpr double windowLimit = 900; // milliseconds
constexpr double trayMegabytes = 70;
constexpr double windowMegabytes = 180;

// The screen as a file, as Xvfb keeps it: in the format of an X window dump with four bytes a pixel.
class Display {
public:
    explicit Display(const QString& directory) : m_file(directory + u"/Xvfb_screen0"_s) {
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s, u"-screen"_s,
                                   u"0"_s, u"1280x900x24"_s, u"-fbdir"_s, directory});
        if (!m_server.waitForStarted() || !loopUntil([this] { return m_server.canReadLine(); }))
            return;
        qputenv("DISPLAY", ":" + m_server.readLine().trimmed());
        m_works = m_file.open(QIODevice::ReadOnly);
        m_pixels = m_works ? m_file.map(0, m_file.size()) : nullptr;
        const auto header = [this](int field) { return qFromBigEndian<quint32>(m_pixels + 4 * field); };
        if (m_pixels) {
            m_lineBytes = header(12);
            m_pixels += header(0) + 12 * header(19);
        }
    }
    ~Display() {
        m_server.kill();
        m_server.waitForFinished();
    }
    [[nodiscard]] bool works() const { return m_pixels; }
    // A window with its texts has more colours than one that has been cleared only.
    [[nodiscard]] bool isPainted() const {
        std::set<quint32> colours;
        for (quint32 y = 0; y < 620; y += 3) {
            for (quint32 x = 0; x < 900; x += 3)
                colours.insert(qFromLittleEndian<quint32>(m_pixels + y * m_lineBytes + 4 * x) & 0xffffff);
        }
        return colours.size() > 20;
    }

private:
    QProcess m_server;
    QFile m_file;
    const uchar* m_pixels = nullptr;
    quint32 m_lineBytes = 0;
    bool m_works = false;
};

double megabytes(qint64 processID) {
    QFile rollup(u"/proc/%1/smaps_rollup"_s.arg(processID));
    if (!rollup.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : rollup.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

double settledMegabytes(qint64 processID) {
    double last = 0;
    QElapsedTimer unchanged;
    unchanged.start();
    (void)loopUntil([&] {
        const double now = megabytes(processID);
        if (std::abs(now - last) > 0.1)
            unchanged.restart();
        last = now;
        return unchanged.elapsed() > 1500;
    });
    return last;
}

struct Start {
    double milliseconds = 0;
    double megabytes = 0;
};

template<typename Condition>
Start start(const QString& program, const QStringList& arguments, Condition isThere) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    Start start;
    if (!loopUntil([&] { return isThere(process); }))
        qFatal("%s did not come up", qPrintable(program));
    start.milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (process.state() == QProcess::Running)
        start.megabytes = settledMegabytes(process.processId());
    process.terminate();
    process.waitForFinished();
    return start;
}

Start median(std::vector<Start> starts) {
    std::sort(starts.begin(), starts.end(), [](auto& a, auto& b) { return a.milliseconds < b.milliseconds; });
    return starts[starts.size() / 2];
}

bool printMemory(const char* what, double value, double limit) {
    std::printf("%-46s %8.1f MB | limit %6.0f MB, ratio %.2f\n", what, value, limit, value / limit);
    return value <= limit;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, home.path().toUtf8());
    qunsetenv("WAYLAND_DISPLAY");
    createPrivateDirectory(home.filePath(u"Corvane"_s));
    writeFileAtomically(home.filePath(u"Corvane/defaults.json"_s), R"({"setupCompleted": true})");
    const PrivateSessionBus bus;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    const FakeTray tray(bus.address());
    const Display display(home.path());
    if (!tray.works() || !display.works()) {
        std::puts("This needs dbus-daemon and Xvfb.");
        return 1;
    }
    const auto isOver = [](const QProcess& process) { return process.state() == QProcess::NotRunning; };
    const auto isInTray = [&](const QProcess&) { return !tray.items().isEmpty(); };
    const auto isOnScreen = [&](const QProcess&) { return display.isPainted(); };
    std::vector<Start> alone, inTray, withWindow;
    for (int i = 0; i < repetitions; ++i) {
        alone.push_back(start(QStringLiteral(CORVANE), {u"--version"_s}, isOver));
        inTray.push_back(start(QStringLiteral(CORVANE), {u"--background"_s}, isInTray));
        (void)loopUntil([&] { return tray.items().isEmpty(); });
        withWindow.push_back(start(QStringLiteral(CORVANE), {u"--show"_s}, isOnScreen));
        (void)loopUntil([&] { return tray.items().isEmpty() && !display.isPainted(); });
    }
    const Start peer = median(alone), trayStart = median(inTray), window = median(withWindow);
    printFigure("Start to the item in the tray", trayStart.milliseconds, trayLimit, "program alone", peer.milliseconds);
    printFigure("Start to the painted window", window.milliseconds, windowLimit, "program alone", peer.milliseconds);
    const bool isTraySmall = printMemory("Memory in the tray", trayStart.megabytes, trayMegabytes);
    const bool isWindowSmall = printMemory("Memory with the window", window.megabytes, windowMegabytes);
    return isTraySmall && isWindowSmall && trayStart.milliseconds <= trayLimit && window.milliseconds <= windowLimit
               ? 0
               : 1;
}
