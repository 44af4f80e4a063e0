#include "CorvanePlatform/Linux/Audio/CaptureTimeline.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

using Seconds = std::chrono::duration<double>;

// A first stream delivers in bursts what had gathered before. Later the line stays where it is, whatever comes early:
// another device has another delay, and a stalled server may give after all what silence was put in the place of. Such
// frames are not dropped, but the next hole is filled by so much less.
constexpr Seconds warmUp{2};
constexpr double largestDrift = 1e-3;
constexpr Seconds longestStep{0.25};

} // namespace

void CaptureTimeline::delivered(std::int64_t frames, Clock::time_point now) {
    if (!hasBegun()) {
        m_begun = now;
        m_offset = static_cast<double>(frames);
        m_lastDelivery = now;
    }
    m_frames += static_cast<double>(frames);
    const double late = expected(now) - m_frames;
    const double step = largestDrift * m_sampleRate * std::min(Seconds(now - m_lastDelivery), longestStep).count();
    const bool setsTheLine = late < 0 && now - m_begun < warmUp;
    m_offset -= setsTheLine ? late : std::clamp(late, -step, step);
    m_lastDelivery = now;
}

std::int64_t CaptureTimeline::missing(Clock::time_point now) const {
    return std::llround(expected(now) - m_frames);
}

double CaptureTimeline::expected(Clock::time_point now) const {
    return m_offset + Seconds(now - m_begun).count() * m_sampleRate;
}

} // namespace corvane
