#include "CorvaneCore/Recording/TrackMonitor.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace corvane {

namespace {

constexpr std::size_t rememberedChanges = 100;

struct Level {
    float peak = 0;
    double squares = 0;
};

// Works on samples of any type through a function that gives one as a fraction of full scale.
template<typename Sample, typename ToFraction>
Level measure(const std::byte* frames, std::size_t samples, ToFraction toFraction) {
    Level level;
    for (std::size_t i = 0; i < samples; ++i) {
        Sample raw{};
        std::memcpy(&raw, frames + i * sizeof(Sample), sizeof(Sample));
        const float value = toFraction(raw);
        level.peak = std::max(level.peak, std::abs(value));
        level.squares += static_cast<double>(value) * static_cast<double>(value);
    }
    return level;
}

struct Packed24 {
    std::uint8_t bytes[3];
};

Level levelOf(const std::byte* frames, std::size_t samples, AudioFormat::Sample type) {
    switch (type) {
    case AudioFormat::Sample::unsigned8:
        return measure<std::uint8_t>(frames, samples,
                                     [](std::uint8_t raw) { return static_cast<float>(raw - 128) / 128.0F; });
    case AudioFormat::Sample::signed16:
        return measure<std::int16_t>(frames, samples,
                                     [](std::int16_t raw) { return static_cast<float>(raw) / 32768.0F; });
    case AudioFormat::Sample::signed24:
        return measure<Packed24>(frames, samples, [](Packed24 raw) {
            const std::uint32_t high = (static_cast<std::uint32_t>(raw.bytes[2]) << 24) |
                                       (static_cast<std::uint32_t>(raw.bytes[1]) << 16) |
                                       (static_cast<std::uint32_t>(raw.bytes[0]) << 8);
            return static_cast<float>(static_cast<std::int32_t>(high)) / 2147483648.0F;
        });
    case AudioFormat::Sample::signed32:
        return measure<std::int32_t>(frames, samples,
                                     [](std::int32_t raw) { return static_cast<float>(raw) / 2147483648.0F; });
    case AudioFormat::Sample::float32:
        break;
    }
    return measure<float>(frames, samples, [](float raw) { return std::isfinite(raw) ? raw : 0.0F; });
}

QString describe(const AudioInputEvent& event) {
    switch (event.kind) {
    case AudioInputEvent::Kind::deviceChanged:
        return deviceChangeWords::changedTo + event.device;
    case AudioInputEvent::Kind::deviceLost:
        return deviceChangeWords::lost;
    case AudioInputEvent::Kind::deviceBack:
        return deviceChangeWords::back + event.device;
    case AudioInputEvent::Kind::gap:
        break;
    }
    return {};
}

} // namespace

void TrackMonitor::buffer(const std::byte* frames, std::size_t frameCount, const AudioFormat& format, Outcome outcome) {
    const auto count = static_cast<std::int64_t>(frameCount);
    const std::size_t samples = frameCount * static_cast<std::size_t>(format.channels);
    const Level level = levelOf(frames, samples, format.sample);
    m_sampleRate = format.sampleRate;
    if (outcome == Outcome::written)
        m_writtenFrames += count;
    else
        m_lostFrames += count;
    m_isLosing = outcome != Outcome::written;
    if (outcome == Outcome::writeFailed)
        ++m_failedWrites;
    if (level.peak > 0) {
        m_currentSilenceFrames = 0;
    } else {
        m_currentSilenceFrames += count;
        if (outcome == Outcome::written)
            m_silentFrames += count;
    }
    m_peak = std::max(m_peak.load(), level.peak);
    m_squares = m_squares.load() + level.squares;
    m_samples += static_cast<std::int64_t>(samples);
}

void TrackMonitor::event(const AudioInputEvent& event) {
    const std::lock_guard lock(m_eventLock);
    if (event.gapSeconds > 0) {
        m_gapSeconds += event.gapSeconds;
        ++m_gaps;
    }
    if (event.kind == AudioInputEvent::Kind::gap)
        return;
    m_hasDevice = event.kind != AudioInputEvent::Kind::deviceLost;
    if (m_deviceChanges.size() == rememberedChanges)
        m_deviceChanges.erase(m_deviceChanges.begin());
    m_deviceChanges.push_back(describe(event));
}

TrackHealth TrackMonitor::read() {
    const int rate = m_sampleRate;
    const auto seconds = [rate](std::int64_t frames) {
        return rate > 0 ? static_cast<double>(frames) / static_cast<double>(rate) : 0.0;
    };
    TrackHealth health;
    health.recordedSeconds = seconds(m_writtenFrames);
    health.lostSeconds = seconds(m_lostFrames);
    health.silentSeconds = seconds(m_silentFrames);
    health.currentSilenceSeconds = seconds(m_currentSilenceFrames);
    health.failedWrites = m_failedWrites;
    health.isLosing = m_isLosing;
    health.peak = static_cast<double>(m_peak.exchange(0));
    const std::int64_t samples = m_samples.exchange(0);
    const double squares = m_squares.exchange(0);
    health.rms = samples > 0 ? std::sqrt(squares / static_cast<double>(samples)) : 0.0;

    const std::lock_guard lock(m_eventLock);
    health.gapSeconds = m_gapSeconds;
    health.gaps = m_gaps;
    health.deviceChanges = m_deviceChanges;
    health.hasDevice = m_hasDevice;
    return health;
}

} // namespace corvane
