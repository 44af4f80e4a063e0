// What does the list of meetings cost that is rebuilt from the disk each second? Two data directories of finished
// meetings, each with its run and its draft, are scanned; the peer is a plain stat() of the same files.
#include "Benchmarks/ManyMeetings.h"
#include "Benchmarks/Measuring.h"
#include "Support/Builders/ModelFixture.h"

#include "CorvaneCore/Library/MeetingLibrary.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QCoreApplication>

#include <ctime>

using namespace corvane;

namespace {

// The same files that a scan has to look at: each run with its two documents.
std::vector<QByteArray> scannedFiles(const AppPaths& paths, const FileTree& files) {
    std::vector<QByteArray> names;
    for (const QString& run : files.list(paths.runs()).value_or(std::vector<QString>())) {
        for (const char* file : {"", "/app_metadata.json", "/job_state.json"})
            names.push_back(QFile::encodeName(paths.runs() + QLatin1Char('/') + run) + file);
    }
    return names;
}

void measure(int count, double limit) {
    const DataDirectoryBuilder data;
    makeMeetings(data, count);
    const auto files = std::make_shared<LinuxFileTree>();
    data.makeDraft(QStringLiteral("LAST"), {});
    DataDirectoryBuilder::settle(*files, data.paths.meeting(QStringLiteral("LAST")) + QStringLiteral("/metadata.json"));

    const std::vector<QByteArray> names = scannedFiles(data.paths, *files);
    const double plain = medianMilliseconds(15, [&] {
        struct stat status {};
        for (const QByteArray& name : names)
            require(::stat(name.constData(), &status) == 0, "stat");
    });
    MeetingLibrary library(data.paths, files);
    std::size_t listed = 0;
    const double first = milliseconds([&] { listed = library.scan().size(); });
    require(listed == static_cast<std::size_t>(count) + 1, "scan");
    const std::clock_t before = std::clock();
    const double warm = medianMilliseconds(101, [&] { listed = library.scan().size(); });
    // Of all threads, and not inflated by what else the machine does.
    const double processor = 1e3 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / 101;
    std::printf("%d meetings, %zu listed; %.2f ms of processor time a scan\n", count, listed, processor);
    printFigure("  MeetingLibrary::scan, repeated", warm, limit, "stat of the same files", plain);
    printFigure("  MeetingLibrary::scan, first", first, 10 * limit, "stat of the same files", plain);

    ModelFixture fixture(data.paths);
    AppModel& model = fixture.start();
    const double tick = medianMilliseconds(101, [&] { model.pollTick(); });
    printFigure("  AppModel::pollTick, idle", tick, limit, "stat of the same files", plain);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    measure(1'000, 10);
    std::fflush(stdout);
    measure(10'000, 100);
    return 0;
}
