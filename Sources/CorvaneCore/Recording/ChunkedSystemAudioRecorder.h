// Writes what the computer plays into numbered chunk files of its own, beside the microphone's. It keeps no states but
// two facts: whether it captures, and whether it is paused; a stopped recorder may be started again. Main thread.
#pragma once

#include "CorvaneCore/Recording/ChunkSeries.h"

#include <memory>
#include <vector>

namespace corvane {

class ChunkedSystemAudioRecorder {
public:
    ChunkedSystemAudioRecorder(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                               std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                               std::shared_ptr<const Clock> clock);

    // Starts a capture and stops it at once, so that a system which asks the user for permission asks now. On the
    // thread of its caller, for as long as a start takes. Throws AudioInputError.
    static void primePermission(AudioInputs& inputs);

    // Both throw FileError, AudioFileError or AudioInputError.
    void start();
    void resume();
    // Capture goes on while paused, but nothing is written.
    void pause();
    void stop();

    // The closed chunks that exist, in the order they closed, each once.
    [[nodiscard]] const std::vector<QString>& chunkURLs() const { return m_chunkURLs; }
    [[nodiscard]] TrackMonitor& monitor() { return m_series.monitor(); }

    // As the timer does each chunk duration.
    void rotate();

private:
    void goOn();
    void remember(const QString& url);

    bool m_isCapturing = false;
    bool m_isPaused = false;
    std::vector<QString> m_chunkURLs;
    ChunkSeries m_series;
};

} // namespace corvane
