// The speech of a recording as one stretch without pauses, in frames of 10 ms. A value; any thread.
#pragma once

#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <span>
#include <vector>

namespace corvane {

class SpeechTimeline {
public:
    // The ranges are in order and apart from each other.
    explicit SpeechTimeline(std::span<const FrameRange> speech);

    [[nodiscard]] std::int64_t length() const { return m_length; }

    // How many frames of speech lie before `frame` of the recording.
    [[nodiscard]] std::int64_t before(std::int64_t frame) const;

    // The frames of the recording that frames `range` of the timeline are.
    [[nodiscard]] std::vector<FrameRange> inRecording(FrameRange range) const;

private:
    struct Stretch {
        FrameRange range;
        std::int64_t before = 0; // frames of speech
    };
    std::vector<Stretch> m_stretches;
    std::int64_t m_length = 0;
};

} // namespace corvane
