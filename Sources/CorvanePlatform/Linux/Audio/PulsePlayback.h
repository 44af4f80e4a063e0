// One stretch of sound on its way to the sound server: a thread that decodes and plays until the end, until the server
// is gone or until its destruction. Owned by a player, main thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioPlayer.h"
#include "CorvanePlatform/Linux/Audio/FFmpegDecoder.h"
#include "CorvanePlatform/Linux/Audio/PulseConnection.h"

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace corvane {

// A new one, with a new stream, for every start and every seek: a stream's own time is stale for a while after a flush.
// The server keeps a third of a second of sound, so that the thread may be late; more would only be thrown away.
class PulsePlayback {
public:
    // Plays from where the decoder stands, which is `fromSeconds`. Throws and reports failures as AudioPlayer::play().
    PulsePlayback(FFmpegDecoder& decoder, double fromSeconds, AudioPlayer::FailureHandler onFailure);
    ~PulsePlayback();
    PulsePlayback(const PulsePlayback&) = delete;
    PulsePlayback& operator=(const PulsePlayback&) = delete;

    // What is heard now; after the end, where the sound ended.
    [[nodiscard]] double positionSeconds() const { return m_position; }

private:
    void run();
    [[nodiscard]] bool keepGoing();
    void openStream();
    void write();
    void updatePosition();
    void begin(const QString& error);
    void fail(const QString& reason);

    FFmpegDecoder& m_decoder;
    const AudioPlayer::FailureHandler m_onFailure;
    const double m_from;
    std::atomic<double> m_position;

    PulseLoop m_loop;
    std::optional<PulseConnection> m_connection;
    PulseStream m_stream;
    PulseOperation m_drain;
    std::vector<float> m_buffer;
    std::int64_t m_written = 0; // frames

    std::promise<QString> m_begun; // an error, or nothing
    bool m_isBeginning = true;
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};

} // namespace corvane
