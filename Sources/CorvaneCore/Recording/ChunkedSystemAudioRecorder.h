// Writes what the computer plays into numbered chunk files of its own, beside the microphone's. It keeps no states but
// two facts: whether it captures, and whether it is paused; a stopped recorder may be started again. Main thread, but
// for the writing of buffers.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvaneCore/Interfaces/AudioInput.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Recording/ChunkFile.h"

#include <QTimer>

#include <memory>
#include <vector>

namespace corvane {

// Whether a recording also captures what the computer plays. Starts as coreAudio at every launch.
enum class SystemAudioCaptureMode { off, coreAudio };

class ChunkedSystemAudioRecorder {
public:
    ChunkedSystemAudioRecorder(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                               std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                               std::shared_ptr<const Clock> clock);
    ~ChunkedSystemAudioRecorder();
    ChunkedSystemAudioRecorder(const ChunkedSystemAudioRecorder&) = delete;
    ChunkedSystemAudioRecorder& operator=(const ChunkedSystemAudioRecorder&) = delete;

    // Both throw FileError, AudioFileError or AudioInputError.
    void start();
    void resume();
    // Capture goes on while paused, but nothing is written.
    void pause();
    void stop();

    // The closed chunks that exist, in the order they closed, each once.
    [[nodiscard]] const std::vector<QString>& chunkURLs() const { return m_chunkURLs; }
    [[nodiscard]] TrackMonitor& monitor() { return m_chunk.monitor(); }

    // As the timer does each chunk duration.
    void rotate();

private:
    void goOn();
    void openNextChunk();
    void remember(const std::optional<ChunkFile::Closed>& closed);

    QString m_chunksDirectory;
    qint64 m_nextChunkIndex;
    double m_chunkDurationSeconds;
    std::shared_ptr<AudioFiles> m_files;
    std::shared_ptr<const Clock> m_clock;
    bool m_isCapturing = false;
    bool m_isPaused = false;
    std::vector<QString> m_chunkURLs;
    QTimer m_rotationTimer;
    ChunkFile m_chunk;
    std::unique_ptr<AudioInput> m_input;
};

} // namespace corvane
