#include "CorvaneCore/Recording/MeetingChunks.h"

#include "CorvaneCore/Library/FileNames.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

std::vector<QString> wavFilesIn(const QString& directory, const FileTree& files) {
    std::vector<QString> found;
    for (const QString& name : files.list(directory).value_or(std::vector<QString>())) {
        if (pathExtension(name).compare(QLatin1String("wav"), Qt::CaseInsensitive) == 0)
            found.push_back(directory + QLatin1Char('/') + name);
    }
    return found;
}

std::vector<QString> existingByName(std::vector<QString> paths, const FileTree& files) {
    std::erase_if(paths, [&](const QString& path) { return files.stamp(path).kind == FileStamp::Kind::missing; });
    std::stable_sort(paths.begin(), paths.end(),
                     [](const QString& a, const QString& b) { return lastPathComponent(a) < lastPathComponent(b); });
    QSet<QString> seen;
    std::erase_if(paths, [&seen](const QString& path) {
        const bool again = seen.contains(path);
        seen.insert(path);
        return again;
    });
    return paths;
}

} // namespace

std::vector<QString> chunkURLs(const MeetingDraftMetadata& draft, const FileTree& files) {
    std::vector<QString> paths = draft.chunks;
    if (draft.chunksDirectory) {
        const std::vector<QString> found = wavFilesIn(*draft.chunksDirectory, files);
        paths.insert(paths.end(), found.begin(), found.end());
    }
    return existingByName(std::move(paths), files);
}

std::vector<QString> systemChunkURLs(const MeetingDraftMetadata& draft, const FileTree& files) {
    if (!draft.chunksDirectory)
        return {};
    const QString sibling = QFileInfo(*draft.chunksDirectory).path() + QStringLiteral("/system-chunks");
    return existingByName(wavFilesIn(sibling, files), files);
}

std::optional<QString> forgottenChunksDirectory(const MeetingDraftMetadata& draft, const QString& meetingDirectory,
                                                const FileTree& files) {
    const QString directory = meetingDirectory + QStringLiteral("/chunks");
    const bool isFinished = !draft.audioPath.isEmpty() && files.stamp(draft.audioPath).kind != FileStamp::Kind::missing;
    if (draft.chunksDirectory || isFinished || wavFilesIn(directory, files).empty())
        return std::nullopt;
    return directory;
}

qint64 nextChunkIndex(const std::vector<QString>& chunks) {
    qint64 largest = -1;
    for (const QString& chunk : chunks) {
        bool isNumber = false;
        const qint64 index = fileTitle(chunk).toLongLong(&isNumber);
        if (isNumber && index < std::numeric_limits<qint64>::max())
            largest = std::max(largest, index);
    }
    return largest + 1;
}

} // namespace corvane
