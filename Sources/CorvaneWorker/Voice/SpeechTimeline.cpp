#include "CorvaneWorker/Voice/SpeechTimeline.h"

#include <algorithm>

namespace corvane {

SpeechTimeline::SpeechTimeline(std::span<const FrameRange> speech) {
    m_stretches.reserve(speech.size());
    for (const FrameRange& range : speech) {
        m_stretches.push_back({range, m_length});
        m_length += range.length();
    }
}

std::int64_t SpeechTimeline::before(std::int64_t frame) const {
    const auto next =
        std::upper_bound(m_stretches.begin(), m_stretches.end(), frame,
                         [](std::int64_t value, const Stretch& stretch) { return value < stretch.range.begin; });
    if (next == m_stretches.begin())
        return 0;
    const Stretch& own = *std::prev(next);
    return own.before + std::min(frame - own.range.begin, own.range.length());
}

std::vector<FrameRange> SpeechTimeline::inRecording(FrameRange range) const {
    std::vector<FrameRange> parts;
    auto stretch = std::partition_point(m_stretches.begin(), m_stretches.end(), [&range](const Stretch& candidate) {
        return candidate.before + candidate.range.length() <= range.begin;
    });
    for (; stretch != m_stretches.end() && stretch->before < range.end; ++stretch) {
        const std::int64_t shift = stretch->range.begin - stretch->before;
        parts.push_back({std::max(range.begin, stretch->before) + shift,
                         std::min(range.end, stretch->before + stretch->range.length()) + shift});
    }
    return parts;
}

} // namespace corvane
