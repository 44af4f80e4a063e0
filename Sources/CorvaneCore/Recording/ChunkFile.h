// The open chunk of a recorder, shared between the main thread, which opens and closes it, and the capture thread,
// which writes to it. One lock guards it. A buffer that comes while no chunk is open is dropped, and counted.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvaneCore/Recording/TrackMonitor.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace corvane {

class ChunkFile {
public:
    struct Closed {
        QString url;
        QDateTime startedAt;
    };

    // Makes `file` the open chunk and gives the one that was open, already finished. Between the two no buffer is lost.
    std::optional<Closed> exchange(std::unique_ptr<AudioFileWriter> file, const QString& url, const AudioFormat& format,
                                   const QDateTime& now);
    // Finishes the open chunk, if any. What comes afterwards is dropped on purpose, or is lost.
    enum class Afterwards { dropped, lost };
    std::optional<Closed> close(Afterwards afterwards);
    [[nodiscard]] std::optional<QString> currentChunkURL() const;

    // Capture thread.
    void write(const std::byte* frames, std::size_t frameCount);
    [[nodiscard]] TrackMonitor& monitor() { return m_monitor; }

private:
    struct Open {
        std::unique_ptr<AudioFileWriter> file;
        QString url;
        QDateTime startedAt;
    };
    static std::optional<Closed> finish(Open open);

    mutable std::mutex m_fileLock;
    Open m_open;
    Afterwards m_afterwards = Afterwards::dropped;
    AudioFormat m_format;
    TrackMonitor m_monitor;
};

// "%06d.wav" in a directory of chunks.
[[nodiscard]] QString chunkURL(const QString& chunksDirectory, qint64 index);
// The number in a chunk's name, or 0.
[[nodiscard]] qint64 chunkIndex(const QString& url);

} // namespace corvane
