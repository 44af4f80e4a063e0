#include "CorvanePlatform/Linux/Audio/PulsePlayback.h"

#include "CorvaneContract/Text/UserText.h"

#include <algorithm>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto startLimit = std::chrono::seconds(3);
// A server that is well, and one that is not there, show it sooner. One that hangs must not hold up a window.
constexpr auto startPatience = std::chrono::milliseconds(80);
constexpr int roundMicroseconds = 20'000;
constexpr int buffersPerSecond = 3;

} // namespace

PulsePlayback::PulsePlayback(FFmpegDecoder& decoder, double fromSeconds, AudioPlayer::FailureHandler onFailure)
    : m_decoder(decoder),
      m_onFailure(std::move(onFailure)),
      m_from(fromSeconds),
      m_position(fromSeconds),
      m_loop(pa_mainloop_new()) {
    auto begun = m_begun.get_future();
    m_thread = std::thread([this] { run(); });
    if (begun.wait_for(startPatience) != std::future_status::ready)
        return;
    if (const QString error = begun.get(); !error.isEmpty()) {
        m_thread.join();
        throw AudioPlayerError(error);
    }
}

PulsePlayback::~PulsePlayback() {
    m_isStopping = true;
    pa_mainloop_wakeup(m_loop.get());
    m_thread.join();
}

void PulsePlayback::run() {
    const auto startBy = Clock::now() + startLimit;
    m_connection.emplace(m_loop.get(), PulseConnection::Changes::once);
    while (!m_isStopping && keepGoing()) {
        if (m_isBeginning && Clock::now() > startBy)
            break;
        if (!runOnce(m_loop.get(), roundMicroseconds))
            break;
    }
    if (m_isBeginning && !m_isStopping)
        fail(m_connection->hasFailed() ? pulsewords::noServer() : pulsewords::noAnswer());
    else if (!m_isStopping && m_connection->hasFailed())
        fail(pulsewords::noServer());
    m_drain.reset();
    m_stream.reset();
    m_connection.reset();
}

void PulsePlayback::begin(const QString& error) {
    m_isBeginning = false;
    m_begun.set_value(error);
}

void PulsePlayback::fail(const QString& reason) {
    if (m_isBeginning)
        begin(reason);
    if (m_onFailure)
        m_onFailure(reason);
}

// False when there is nothing left to do, or nobody left to do it for.
bool PulsePlayback::keepGoing() {
    if (m_connection->hasFailed())
        return false;
    if (!m_connection->isReady())
        return true;
    if (!m_stream)
        openStream();
    if (!m_stream || !PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream.get()))) {
        fail(UserText::tr("The sound server takes no sound."));
        return false;
    }
    if (pa_stream_get_state(m_stream.get()) != PA_STREAM_READY)
        return true;
    if (m_isBeginning)
        begin({});
    if (!m_drain)
        write();
    if (m_drain && pa_operation_get_state(m_drain.get()) != PA_OPERATION_RUNNING) {
        m_position = m_from + static_cast<double>(m_written) / m_decoder.sampleRate();
        return false;
    }
    updatePosition();
    return true;
}

void PulsePlayback::openStream() {
    const pa_sample_spec samples{.format = PA_SAMPLE_FLOAT32LE,
                                 .rate = static_cast<std::uint32_t>(m_decoder.sampleRate()),
                                 .channels = static_cast<std::uint8_t>(m_decoder.channels())};
    const PulseProperties properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "production");
    m_stream.reset(
        pa_stream_new_with_proplist(m_connection->context(), "Playback", &samples, nullptr, properties.get()));
    pa_buffer_attr buffers{};
    buffers.maxlength = UINT32_MAX;
    buffers.tlength = static_cast<std::uint32_t>(pa_bytes_per_second(&samples)) / buffersPerSecond;
    buffers.tlength -= buffers.tlength % static_cast<std::uint32_t>(pa_frame_size(&samples));
    buffers.prebuf = UINT32_MAX;
    buffers.minreq = UINT32_MAX;
    constexpr auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE |
                                                          PA_STREAM_ADJUST_LATENCY);
    if (m_stream && pa_stream_connect_playback(m_stream.get(), nullptr, &buffers, flags, nullptr, nullptr) != 0)
        m_stream.reset();
}

void PulsePlayback::write() {
    const std::size_t bytes = pa_stream_writable_size(m_stream.get());
    const auto channels = static_cast<std::size_t>(m_decoder.channels());
    if (bytes == static_cast<std::size_t>(-1) || bytes < channels * sizeof(float))
        return;
    m_buffer.resize(bytes / (channels * sizeof(float)) * channels);
    const std::size_t frames = m_decoder.read(m_buffer);
    if (frames > 0)
        pa_stream_write(m_stream.get(), m_buffer.data(), frames * channels * sizeof(float), nullptr, 0,
                        PA_SEEK_RELATIVE);
    m_written += static_cast<std::int64_t>(frames);
    if (frames < m_buffer.size() / channels)
        m_drain.reset(pa_stream_drain(m_stream.get(), nullptr, nullptr));
}

void PulsePlayback::updatePosition() {
    pa_usec_t played = 0;
    if (pa_stream_get_time(m_stream.get(), &played) != 0)
        return; // the server has not told it yet
    const double heard = std::min(static_cast<double>(played) / PA_USEC_PER_SEC,
                                  static_cast<double>(m_written) / m_decoder.sampleRate());
    m_position = std::max(m_position.load(), m_from + heard);
}

} // namespace corvane
