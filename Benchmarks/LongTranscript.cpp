// How does the window bear a meeting of 20,000 turns? From its selection to the first frame that shows it, the longest
// and the median frame while it is scrolled through, and what memory is given back after leaving it. Drawn by the
// processor. The peer is a meeting of 20 turns.
#include "Benchmarks/Measuring.h"
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"

#include "CorvaneApp/Views/QuitController.h"
#include "CorvaneApp/Views/Window/DashboardWindowController.h"
#include "CorvanePlatform/Null/FixedDesktopPreferences.h"

#include <QApplication>
#include <QEventLoop>
#include <QQuickItem>
#include <QTimer>

#include <malloc.h>

#include <cstdio>

using namespace corvane;

namespace {

constexpr int longMeeting = 20000;
constexpr int shortMeeting = 20;

void makeMeeting(const DataDirectoryBuilder& data, const QString& name, int turns) {
    TranscriptResult result = speechResult(turns);
    for (std::size_t i = 0; i < result.segments.size(); ++i)
        result.segments[i].speaker = QStringLiteral("SPEAKER_0%1").arg(i % 4);
    data.makeRun(name, recordOf(name, {}, name));
    data.write(name, runFiles::result, encodeTranscriptResult(result));
}

// The next frame that is drawn after everything that is due has been done.
void waitForFrame(QQuickWindow& window) {
    QCoreApplication::sendPostedEvents();
    QEventLoop loop;
    const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    QTimer::singleShot(3000, &loop, [] { std::exit((std::fputs("no frame was drawn\n", stderr), 1)); });
    window.update();
    loop.exec();
    QObject::disconnect(connection);
}

double select(AppModel& model, QQuickWindow& window, const QString& meeting) {
    return milliseconds([&] {
        model.selectSidebarItem(SidebarItem::meeting(meeting));
        QCoreApplication::processEvents();
        waitForFrame(window);
    });
}

QQuickItem* transcriptList(QQuickItem* item) {
    if (item->inherits("QQuickListView") && item->property("count").toInt() > shortMeeting)
        return item;
    for (QQuickItem* child : item->childItems()) {
        if (QQuickItem* found = transcriptList(child))
            return found;
    }
    return nullptr;
}

// Megabytes of this process's own and its share of what it has in common with others.
double proportionalSetSize() {
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return line.simplified().split(' ')[1].toDouble() / 1024;
    }
    return 0;
}

struct Frames {
    double median = 0;
    double longest = 0;
};

Frames scroll(QQuickWindow& window, QQuickItem& list) {
    constexpr int frames = 301;
    constexpr double pixels = 60;
    std::vector<double> times;
    times.reserve(frames);
    for (int i = 0; i < frames; ++i) {
        list.setProperty("contentY", list.property("contentY").toDouble() + pixels);
        times.push_back(milliseconds([&] { waitForFrame(window); }));
    }
    std::sort(times.begin(), times.end());
    return {times[frames / 2], times.back()};
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QApplication application(argc, argv);
    const DataDirectoryBuilder data;
    makeMeeting(data, QStringLiteral("LONG"), longMeeting);
    makeMeeting(data, QStringLiteral("SHORT"), shortMeeting);
    ModelFixture fixture(data.paths);
    AppModel& model = fixture.start();
    QuitController quit(model);
    DashboardWindowController controller(model, quit, fixture.clock, std::make_shared<FixedDesktopPreferences>(),
                                         data.paths.root + QStringLiteral("/window.ini"));
    if (!controller.show())
        return 1;
    QQuickWindow& window = *controller.window();
    waitForFrame(window);

    select(model, window, QStringLiteral("LONG"));
    const double shortTime = select(model, window, QStringLiteral("SHORT"));
    const double before = proportionalSetSize();
    const double longTime = select(model, window, QStringLiteral("LONG"));
    QQuickItem* list = transcriptList(window.contentItem());
    if (!list) {
        std::fputs("the transcript is not shown\n", stderr);
        return 1;
    }
    const double shown = proportionalSetSize();
    const Frames frames = scroll(window, *list);
    select(model, window, QStringLiteral("SHORT"));
    const double after = proportionalSetSize();

    constexpr double selectionLimit = 200;
    constexpr double frameLimit = 17;
    printFigure("selection to first frame, 20,000 turns", longTime, selectionLimit, "20 turns", shortTime);
    printFigure("frame while scrolling, median", frames.median, frameLimit, "longest", frames.longest);
    std::printf("memory: %.1f MB before, %.1f MB shown, %.1f MB after leaving\n", before, shown, after);
    return longTime <= selectionLimit && frames.median <= frameLimit ? 0 : 1;
}
