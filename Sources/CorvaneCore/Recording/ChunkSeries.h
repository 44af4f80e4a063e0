// The chunk files of one captured track: their numbers, the one that is open, and the timer that changes them over.
// Owned by a recorder, which says when it runs; main thread, but for the writing of buffers, which the capture thread
// does under the lock of ChunkFile.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvaneCore/Interfaces/AudioInput.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Recording/AudioChunk.h"
#include "CorvaneCore/Recording/ChunkFile.h"

#include <QTimer>

#include <functional>
#include <memory>

namespace corvane {

class ChunkSeries {
public:
    struct Handlers {
        std::function<void(const AudioChunk&)> onClosed;
        std::function<void()> onTick; // each chunk duration, and each second after a change that failed
    };

    // Touches neither the disk nor the input.
    ChunkSeries(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                std::shared_ptr<const Clock> clock, Handlers handlers);
    ~ChunkSeries();
    ChunkSeries(const ChunkSeries&) = delete;
    ChunkSeries& operator=(const ChunkSeries&) = delete;

    [[nodiscard]] AudioInput& input() { return *m_input; }
    [[nodiscard]] TrackMonitor& monitor() { return m_chunk.monitor(); }

    void createDirectory(); // throws FileError
    void startInput();      // throws AudioInputError

    // Closes the open chunk, if any, once the next one is there, so that no buffer is lost in between; gives its path.
    // The number is spent even if that fails. Throws AudioInputError or AudioFileError.
    QString openNext();
    // What comes afterwards is dropped.
    void close();
    // As a tick does it. A failure leaves no chunk open, counts what comes as lost, and gives nothing.
    std::optional<QString> changeOver();

    void scheduleRotation() { schedule(m_chunkDurationSeconds); }
    void stopRotation() { m_rotationTimer.stop(); }

private:
    void schedule(double seconds);
    void announce(const std::optional<ChunkFile::Closed>& closed) const;

    QString m_chunksDirectory;
    qint64 m_nextChunkIndex;
    double m_chunkDurationSeconds;
    std::shared_ptr<AudioFiles> m_files;
    std::shared_ptr<const Clock> m_clock;
    Handlers m_handlers;
    QTimer m_rotationTimer;
    ChunkFile m_chunk;
    std::unique_ptr<AudioInput> m_input; // destroyed first, so that no buffer meets a series that is gone
};

} // namespace corvane
