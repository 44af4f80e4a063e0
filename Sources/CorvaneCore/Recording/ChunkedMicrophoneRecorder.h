// Writes the microphone, without conversion, into numbered chunk files of about one length each, so that a crash costs
// at most the end of the chunk that is open. It knows nothing about meetings. Main thread. Ends without a word when
// destroyed.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Recording/ChunkSeries.h"
#include "CorvaneCore/Recording/RecordingState.h"

#include <functional>
#include <memory>

namespace corvane {

// An operation that does not fit the recorder's state. Reads as the name of its case.
class RecorderError : public Error {
public:
    RecorderError() : Error(UserText::tr("notRecording")) {}
};

class ChunkedMicrophoneRecorder {
public:
    ChunkedMicrophoneRecorder(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                              std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                              std::shared_ptr<const Clock> clock);

    // Each gives the location of a chunk and may throw RecorderError, FileError, AudioFileError or AudioInputError.
    QString start();  // begins, or goes on after a pause; while recording it only gives the present chunk
    QString pause();  // closes the chunk
    QString resume(); // opens the next chunk
    QString stop();   // for good

    [[nodiscard]] const RecordingState& state() const { return m_state; }
    [[nodiscard]] TrackMonitor& monitor() { return m_series.monitor(); }

    // Closes the open chunk and opens the next; called by the timer each chunk duration. A failure leaves no chunk
    // open, and opening is tried again each second.
    void rotate();

    // Called on the main thread with each chunk that was closed.
    std::function<void(const AudioChunk&)> onChunkClosed;

private:
    RecordingState m_state;
    ChunkSeries m_series;
};

} // namespace corvane
