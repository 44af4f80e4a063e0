#include "CorvanePlatform/Linux/Audio/PulseCapture.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Recording/SystemAudioCapture.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvane {

using namespace std::chrono_literals;

namespace {

constexpr auto startLimit = 3s;
// Longer than that, so that a start can tell a server that does not answer from none.
constexpr auto connectLimit = 5s;
constexpr auto retryDelay = 300ms;
constexpr int roundMicroseconds = 100'000;
constexpr int shortRoundMicroseconds = 20'000;

constexpr std::int64_t fragmentFrames = 4096;
// Frames come every 85 ms. What is later than this may never come.
constexpr auto holeAfter = 250ms;
// A server that was stalled delivers what it kept back in a burst, which is awaited to know what is really missing.
constexpr auto settling = 100ms;
// Silence follows the clock at this distance. While a device is open its frames may still come, and then both would
// be in the recording.
constexpr auto silenceDelay = 1s;
constexpr auto silenceDelayWhileOpen = 4s;
constexpr auto lossReportedAfter = 500ms;
constexpr auto lossReportedAfterWhileOpen = 5s;
// Shorter ones are the jitter of the arrivals.
constexpr auto shortestHole = 20ms;

template<typename Duration>
std::int64_t framesIn(Duration duration, int sampleRate) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count() * sampleRate / 1'000'000;
}

} // namespace

PulseCapture::PulseCapture(CaptureRole role, std::optional<CaptureFormat> format, const Handlers& handlers)
    : m_role(role),
      m_handlers(handlers),
      m_format(format),
      m_loop(pa_mainloop_new()),
      m_startBy(Clock::now() + startLimit) {
    auto started = m_started.get_future();
    m_thread = std::thread([this] { run(); });
    if (const QString error = started.get(); !error.isEmpty()) {
        m_thread.join();
        throw AudioInputError(error);
    }
}

PulseCapture::~PulseCapture() {
    m_isStopping = true;
    pa_mainloop_wakeup(m_loop.get());
    m_thread.join();
}

void PulseCapture::run() {
    while (!m_isStopping) {
        const auto now = Clock::now();
        step(now);
        watchStart(now);
        if (m_isStopping)
            break;
        const bool isWaiting = m_isStarting || (m_hole && m_stream);
        if (!runOnce(m_loop.get(), isWaiting ? shortRoundMicroseconds : roundMicroseconds))
            std::this_thread::sleep_for(retryDelay);
    }
    finish(Clock::now());
    m_stream.reset();
    m_connection.reset();
}

void PulseCapture::step(Clock::time_point now) {
    keepConnected(now);
    keepStream(now);
    listen(now);
}

// A start fails at once where waiting would not help.
void PulseCapture::watchStart(Clock::time_point now) {
    if (!m_isStarting)
        return;
    const bool hasNoDevice = m_server && !m_stream &&
                             (m_role == CaptureRole::microphone ? m_server->sources.empty() : m_server->sinks.empty());
    if (m_connection && !hasNoDevice && now < m_startBy)
        return;
    m_isStarting = false;
    m_isStopping = true;
    m_started.set_value(whyNoFrames());
}

QString PulseCapture::whyNoFrames() const {
    if (!m_connection)
        return pulsewords::noServer();
    if (m_role == CaptureRole::systemAudio && m_streamError != 0)
        return SystemAudioCaptureError::coreAudioStatus(QStringLiteral("pa_stream_connect_record"), m_streamError)
            .text();
    if (!m_target.source.empty())
        return UserText::tr("The sound server delivers no sound from %1.").arg(m_target.description);
    return m_server ? pulsewords::noDevice(m_role) : pulsewords::noAnswer();
}

void PulseCapture::keepConnected(Clock::time_point now) {
    if (m_connection && (m_connection->hasFailed() || (!m_connection->isReady() && now > m_connectBy))) {
        dropStream();
        m_connection.reset();
        m_server.reset();
        m_connectAt = now + retryDelay;
    } else if (!m_connection && now >= m_connectAt) {
        m_connection.emplace(m_loop.get(), PulseConnection::Changes::followed);
        m_connectBy = now + connectLimit;
    }
    if (!m_connection)
        return;
    if (auto server = m_connection->takeServer())
        m_server = std::move(server);
}

void PulseCapture::keepStream(Clock::time_point now) {
    if (m_stream && isStreamLost()) {
        // The next attempt goes by a fresh account, and not at once to a device that cannot be opened.
        m_openAt = m_wasStreamReady ? now : now + retryDelay;
        if (pa_stream_get_state(m_stream.get()) == PA_STREAM_FAILED)
            m_streamError = pa_context_errno(m_connection->context());
        dropStream();
        m_server.reset();
        m_connection->renew();
    }
    if (!m_server)
        return;
    const auto target = captureTarget(*m_server, m_role, m_target.source);
    if (!target || (target->source == m_target.source && (m_stream || now < m_openAt)))
        return;
    dropStream();
    open(*target);
}

// A stream that the server connected to another device than the one asked for must not be heard.
bool PulseCapture::isStreamLost() const {
    if (!isStreamReady())
        return !PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream.get()));
    const char* device = pa_stream_get_device_name(m_stream.get());
    return !device || m_target.source != device;
}

void PulseCapture::open(const CaptureTarget& target) {
    if (!m_format)
        m_format = target.format;
    m_target = target;
    const pa_sample_spec samples = sampleSpec(m_format->format);
    const PulseProperties properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "production");
    const char* name = m_role == CaptureRole::microphone ? "Microphone" : "System audio";
    m_stream.reset(
        pa_stream_new_with_proplist(m_connection->context(), name, &samples, &m_format->channels, properties.get()));
    pa_buffer_attr buffers{};
    buffers.maxlength = UINT32_MAX; // as much as the server allows
    buffers.fragsize =
        static_cast<std::uint32_t>(fragmentFrames) * static_cast<std::uint32_t>(m_format->format.bytesPerFrame());
    // A stream that may be moved is moved to the microphone when the output that it hears goes away. Without
    // ADJUST_LATENCY a device may deliver every two seconds only.
    constexpr auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY);
    if (m_stream && pa_stream_connect_record(m_stream.get(), target.source.c_str(), &buffers, flags) == 0)
        return;
    m_streamError = pa_context_errno(m_connection->context());
    dropStream();
    m_openAt = Clock::now() + retryDelay;
}

void PulseCapture::dropStream() {
    if (!m_stream)
        return;
    m_stream.reset();
    m_wasStreamReady = false;
    if (m_timeline && m_timeline->hasBegun() && !m_hole)
        m_hole.emplace();
    if (m_hole)
        m_hole->dataSince.reset();
}

bool PulseCapture::isStreamReady() const {
    return m_stream && pa_stream_get_state(m_stream.get()) == PA_STREAM_READY;
}

std::int64_t PulseCapture::readableFrames() const {
    if (!isStreamReady() || isStreamLost())
        return 0;
    const std::size_t bytes = pa_stream_readable_size(m_stream.get());
    return bytes == static_cast<std::size_t>(-1) ? 0
                                                 : static_cast<std::int64_t>(bytes / m_format->format.bytesPerFrame());
}

void PulseCapture::listen(Clock::time_point now) {
    const bool hasData = readableFrames() > 0;
    m_wasStreamReady |= hasData;
    if (!m_timeline) {
        if (!hasData)
            return;
        m_timeline.emplace(m_format->format.sampleRate);
        m_silence.assign(m_format->format.bytesPerFrame() * fragmentFrames,
                         m_format->format.sample == AudioFormat::Sample::unsigned8 ? std::byte{0x80} : std::byte{});
        m_heard = m_target.source;
        m_isStarting = false;
        m_started.set_value({});
    }
    if (!m_hole && m_timeline->hasBegun() && m_timeline->sinceDelivery(now) > holeAfter)
        m_hole.emplace();
    if (m_hole && !hasData)
        return endure(now);
    if (m_hole && !m_hole->dataSince)
        m_hole->dataSince = now;
    if (m_hole && now - *m_hole->dataSince < settling)
        return;
    if (m_hole)
        closeHole(now);
    if (hasData)
        drain(now);
}

void PulseCapture::endure(Clock::time_point now) {
    const int rate = m_format->format.sampleRate;
    m_hole->dataSince.reset();
    fill(m_timeline->missing(now) - framesIn(m_stream ? silenceDelayWhileOpen : silenceDelay, rate));
    const auto patience = m_stream ? Clock::duration(lossReportedAfterWhileOpen) : Clock::duration(lossReportedAfter);
    if (m_hole->isReported || m_timeline->sinceDelivery(now) < patience)
        return;
    m_hole->isReported = true;
    report(AudioInputEvent::Kind::deviceLost, {}, 0);
}

void PulseCapture::closeHole(Clock::time_point now) {
    const std::int64_t missing = m_timeline->missing(now) - readableFrames();
    if (m_hole->filled > 0 || missing >= framesIn(shortestHole, m_format->format.sampleRate))
        fill(missing);
    const CaptureHole hole = *std::exchange(m_hole, std::nullopt);
    const bool isElsewhere = m_stream && m_heard != m_target.source;
    if (m_stream)
        m_heard = m_target.source;
    if (hole.isReported && m_stream)
        report(AudioInputEvent::Kind::deviceBack, m_target.description, hole.filled);
    else if (isElsewhere)
        report(AudioInputEvent::Kind::deviceChanged, m_target.description, hole.filled);
    else if (hole.filled > 0)
        report(AudioInputEvent::Kind::gap, m_target.description, hole.filled);
}

void PulseCapture::drain(Clock::time_point now) {
    std::int64_t heard = 0;
    std::int64_t lost = 0;
    bool hasHeard = false;
    while (readableFrames() > 0) {
        const void* data = nullptr;
        std::size_t bytes = 0;
        if (pa_stream_peek(m_stream.get(), &data, &bytes) != 0 || bytes == 0)
            break;
        const auto frames = static_cast<std::int64_t>(bytes / m_format->format.bytesPerFrame());
        const bool isRepeated = data && isSurplusSilence(data, frames, m_timeline->missing(now) - heard);
        if (data && !isRepeated)
            deliver(data, frames);
        else if (!data) // a hole that the server knows of
            deliverSilence(frames);
        hasHeard |= data != nullptr;
        if (!isRepeated)
            (data ? heard : lost) += frames;
        pa_stream_drop(m_stream.get());
    }
    if (hasHeard)
        m_timeline->delivered(heard, now);
    if (lost > 0)
        report(AudioInputEvent::Kind::gap, m_target.description, lost);
}

// A server that was stalled for long may deliver silence for time in whose place silence was put already. Sound is kept
// wherever it comes, but that silence would only push the tracks apart.
bool PulseCapture::isSurplusSilence(const void* frames, std::int64_t count, std::int64_t missing) const {
    if (-missing < framesIn(settling, m_format->format.sampleRate) + count)
        return false;
    const std::span bytes(static_cast<const std::byte*>(frames),
                          static_cast<std::size_t>(count) * m_format->format.bytesPerFrame());
    return std::ranges::all_of(bytes, [this](std::byte byte) { return byte == m_silence.front(); });
}

void PulseCapture::finish(Clock::time_point now) {
    if (!m_timeline)
        return;
    if (m_hole)
        closeHole(now);
    drain(now);
}

void PulseCapture::fill(std::int64_t frames) {
    if (frames <= 0)
        return;
    m_hole->filled += frames;
    deliverSilence(frames);
}

void PulseCapture::deliverSilence(std::int64_t frames) {
    m_timeline->filled(frames);
    for (std::int64_t rest = frames; rest > 0; rest -= fragmentFrames)
        deliver(m_silence.data(), std::min(rest, fragmentFrames));
}

void PulseCapture::deliver(const void* frames, std::int64_t count) {
    m_handlers.onBuffer(static_cast<const std::byte*>(frames), static_cast<std::size_t>(count));
}

void PulseCapture::report(AudioInputEvent::Kind kind, const QString& device, std::int64_t gapFrames) {
    if (m_handlers.onEvent)
        m_handlers.onEvent({.kind = kind,
                            .device = device,
                            .gapSeconds = static_cast<double>(gapFrames) / m_format->format.sampleRate});
}

} // namespace corvane
