// Writes the microphone, without conversion, into numbered chunk files of about one length each, so that a crash costs
// at most the end of the chunk that is open. It knows nothing about meetings. Main thread, but for the writing of
// buffers, which the capture thread does under the lock of ChunkFile. Ends without a word when destroyed.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvaneCore/Interfaces/AudioInput.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Recording/ChunkFile.h"
#include "CorvaneCore/Recording/RecordingState.h"

#include <QTimer>

#include <functional>
#include <memory>

namespace corvane {

// An operation that does not fit the recorder's state. Reads as the name of its case.
class RecorderError : public Error {
public:
    RecorderError() : Error(QStringLiteral("notRecording")) {}
};

// A closed chunk.
struct AudioChunk {
    qint64 index = 0;
    QString url;
    QDateTime startedAt;
    QDateTime endedAt;

    friend bool operator==(const AudioChunk&, const AudioChunk&) = default;
};

class ChunkedMicrophoneRecorder {
public:
    ChunkedMicrophoneRecorder(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                              std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                              std::shared_ptr<const Clock> clock);
    ~ChunkedMicrophoneRecorder();
    ChunkedMicrophoneRecorder(const ChunkedMicrophoneRecorder&) = delete;
    ChunkedMicrophoneRecorder& operator=(const ChunkedMicrophoneRecorder&) = delete;

    // Each gives the location of a chunk and may throw RecorderError, FileError, AudioFileError or AudioInputError.
    QString start();  // begins, or goes on after a pause; while recording it only gives the present chunk
    QString pause();  // closes the chunk
    QString resume(); // opens the next chunk
    QString stop();   // for good

    [[nodiscard]] const RecordingState& state() const { return m_state; }
    [[nodiscard]] TrackMonitor& monitor() { return m_chunk.monitor(); }

    // Closes the open chunk and opens the next; called by the timer each chunk duration. A failure leaves no chunk
    // open, and opening is tried again each second.
    void rotate();

    // Called on the main thread with each chunk that was closed.
    std::function<void(const AudioChunk&)> onChunkClosed;

private:
    QString openNextChunk();
    void closeCurrentChunk(ChunkFile::Afterwards afterwards);
    void announce(const std::optional<ChunkFile::Closed>& closed) const;
    void startInput();
    void scheduleRotation(double seconds);

    QString m_chunksDirectory;
    qint64 m_nextChunkIndex;
    double m_chunkDurationSeconds;
    std::shared_ptr<AudioFiles> m_files;
    std::shared_ptr<const Clock> m_clock;
    RecordingState m_state;
    QTimer m_rotationTimer;
    ChunkFile m_chunk;
    std::unique_ptr<AudioInput> m_input; // destroyed first, so that no buffer meets a recorder that is gone
};

} // namespace corvane
