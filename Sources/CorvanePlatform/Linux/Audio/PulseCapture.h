// One running capture: a thread with a loop and a connection of its own, which follows the devices of the sound server
// and hands every frame, and silence for those that never came, to the handlers. Owned by a PulseAudioInput; ends with
// its destruction.
#pragma once

#include "CorvanePlatform/Linux/Audio/CaptureTimeline.h"
#include "CorvanePlatform/Linux/Audio/PulseConnection.h"

#include <atomic>
#include <cstddef>
#include <future>
#include <optional>
#include <thread>
#include <vector>

namespace corvane {

// Time in which no frames came.
struct CaptureHole {
    std::int64_t filled = 0; // frames of silence
    bool isReported = false;
    std::optional<CaptureTimeline::Clock::time_point> dataSince;
};

class PulseCapture {
public:
    struct Handlers {
        AudioInput::BufferHandler onBuffer;
        AudioInput::EventHandler onEvent;
    };

    // Returns when frames flow. Without a format it takes that of the device. Throws AudioInputError. The handlers must
    // live as long as this.
    PulseCapture(CaptureRole role, std::optional<CaptureFormat> format, const Handlers& handlers);
    // Hands over what has arrived, and the silence that is due. No handler runs afterwards.
    ~PulseCapture();
    PulseCapture(const PulseCapture&) = delete;
    PulseCapture& operator=(const PulseCapture&) = delete;

    [[nodiscard]] const CaptureFormat& format() const { return *m_format; }

private:
    using Clock = CaptureTimeline::Clock;

    void run();
    void step(Clock::time_point now);
    void watchStart(Clock::time_point now);
    [[nodiscard]] QString whyNoFrames() const;

    void keepConnected(Clock::time_point now);
    void keepStream(Clock::time_point now);
    void open(const CaptureTarget& target);
    void dropStream();
    [[nodiscard]] bool isStreamReady() const;
    [[nodiscard]] bool isStreamLost() const;
    [[nodiscard]] std::int64_t readableFrames() const;

    void listen(Clock::time_point now);
    void endure(Clock::time_point now);
    void closeHole(Clock::time_point now);
    void drain(Clock::time_point now);
    [[nodiscard]] bool isSurplusSilence(const void* frames, std::int64_t count, std::int64_t missing) const;
    void finish(Clock::time_point now);
    void fill(std::int64_t frames);
    void deliverSilence(std::int64_t frames);
    void deliver(const void* frames, std::int64_t count);
    void report(AudioInputEvent::Kind kind, const QString& device, std::int64_t gapFrames);

    const CaptureRole m_role;
    const Handlers& m_handlers;
    std::optional<CaptureFormat> m_format;

    PulseLoop m_loop;
    std::optional<PulseConnection> m_connection;
    Clock::time_point m_connectAt;
    Clock::time_point m_connectBy;
    std::optional<PulseServer> m_server; // the newest account
    PulseStream m_stream;
    CaptureTarget m_target; // what m_stream records
    Clock::time_point m_openAt;
    bool m_wasStreamReady = false;
    int m_streamError = 0; // why the last stream could not be had, by libpulse's numbers

    std::optional<CaptureTimeline> m_timeline;
    std::optional<CaptureHole> m_hole;
    std::vector<std::byte> m_silence;
    std::string m_heard; // the source of the last frames

    Clock::time_point m_startBy;
    std::promise<QString> m_started; // an error, or nothing
    bool m_isStarting = true;
    std::atomic<bool> m_isStopping = false;
    std::thread m_thread;
};

} // namespace corvane
