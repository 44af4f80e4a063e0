#include "CorvaneCore/Recording/ChunkFile.h"

#include "CorvaneCore/Library/FileNames.h"

#include <utility>

namespace corvane {

std::optional<ChunkFile::Closed> ChunkFile::exchange(std::unique_ptr<AudioFileWriter> file, const QString& url,
                                                     const AudioFormat& format, const QDateTime& now) {
    Open previous;
    {
        const std::lock_guard lock(m_fileLock);
        previous = std::exchange(m_open, Open{std::move(file), url, now});
        m_format = format;
    }
    return finish(std::move(previous));
}

std::optional<ChunkFile::Closed> ChunkFile::close(Afterwards afterwards) {
    Open previous;
    {
        const std::lock_guard lock(m_fileLock);
        previous = std::exchange(m_open, Open());
        m_afterwards = afterwards;
    }
    return finish(std::move(previous));
}

std::optional<QString> ChunkFile::currentChunkURL() const {
    const std::lock_guard lock(m_fileLock);
    return m_open.file ? std::optional(m_open.url) : std::nullopt;
}

void ChunkFile::write(const std::byte* frames, std::size_t frameCount) {
    const std::lock_guard lock(m_fileLock);
    if (!m_open.file && m_afterwards == Afterwards::dropped)
        return;
    auto outcome = TrackMonitor::Outcome::noFile;
    if (m_open.file)
        outcome = m_open.file->write(frames, frameCount) ? TrackMonitor::Outcome::written
                                                         : TrackMonitor::Outcome::writeFailed;
    m_monitor.buffer(frames, frameCount, m_format, outcome);
}

std::optional<ChunkFile::Closed> ChunkFile::finish(Open open) {
    if (!open.file)
        return std::nullopt;
    try {
        open.file->close();
    } catch (const AudioFileError&) {
        // What the disk took is readable; there is nothing more to be had from this chunk.
    }
    return Closed{open.url, open.startedAt};
}

QString chunkURL(const QString& chunksDirectory, qint64 index) {
    return chunksDirectory + QLatin1Char('/') + QString::asprintf("%06lld.wav", index);
}

qint64 chunkIndex(const QString& url) {
    bool isNumber = false;
    const qint64 index = fileTitle(url).toLongLong(&isNumber);
    return isNumber ? index : 0;
}

} // namespace corvane
