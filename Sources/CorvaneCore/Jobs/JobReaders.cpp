#include "CorvaneCore/Jobs/JobReaders.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Interfaces/FileTree.h"

#include <QUtf8StringView>

namespace corvane {

namespace {

// A line feed behind a carriage return ends no line: such a file is not in the form that was agreed on, and is not
// read as if it were.
qsizetype endOfLine(const QByteArray& content, qsizetype start) {
    for (qsizetype end = content.indexOf('\n', start); end >= 0; end = content.indexOf('\n', end + 1)) {
        if (end == 0 || content[end - 1] != '\r')
            return end;
    }
    return content.size();
}

} // namespace

std::optional<WorkerJobState> JobStateReader::read(const QString& runDirectory) const {
    const auto content = readFile(runFiles::in(runDirectory, runFiles::jobState));
    if (!content)
        return std::nullopt;
    try {
        return decodeWorkerJobState(*content);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

std::optional<QString> JobStateReader::latestRun(const QString& directory, const FileTree& files) const {
    const auto names = files.list(directory);
    if (!names)
        return std::nullopt;
    const std::vector<FileStamp> stamps = files.stamps(directory, *names);
    std::optional<std::size_t> latest;
    for (std::size_t i = 0; i < names->size(); ++i) {
        if (stamps[i].kind != FileStamp::Kind::directory)
            continue;
        if (!latest || stamps[*latest].modifiedNanoseconds < stamps[i].modifiedNanoseconds)
            latest = i;
    }
    return latest ? std::optional(directory + QLatin1Char('/') + (*names)[*latest]) : std::nullopt;
}

std::vector<WorkerJobEvent> JobEventReader::read(const QString& runDirectory) const {
    std::vector<WorkerJobEvent> events;
    forEach(runDirectory, [&events](const WorkerJobEvent& event) {
        events.push_back(event);
        return Next::goOn;
    });
    return events;
}

void JobEventReader::forEach(const QString& runDirectory,
                             const std::function<Next(const WorkerJobEvent&)>& visit) const {
    const auto content = readFile(runFiles::in(runDirectory, runFiles::events), maximumEventBytes);
    if (content)
        forEachOf(*content, visit);
}

void JobEventReader::forEachOf(const QByteArray& content, const std::function<Next(const WorkerJobEvent&)>& visit) {
    if (!QUtf8StringView(content).isValidUtf8())
        return;
    for (qsizetype start = 0; start < content.size();) {
        const qsizetype end = endOfLine(content, start);
        if (end > start) {
            const auto event = decodeWorkerJobEvent(QByteArrayView(content.constData() + start, end - start));
            if (event && visit(*event) == Next::stop)
                return;
        }
        start = end + 1;
    }
}

} // namespace corvane
