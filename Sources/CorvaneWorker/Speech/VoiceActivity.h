// Where somebody speaks: decides frame by frame from the loudness. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

// Frames [begin, end) of 10 ms.
struct FrameRange {
    std::int64_t begin = 0;
    std::int64_t end = 0;

    [[nodiscard]] std::int64_t length() const { return end - begin; }
    friend bool operator==(const FrameRange&, const FrameRange&) = default;
};

// Stretches of speech, in order and apart from each other. A frame is speech if it stands out of the noise around it
// (the 10th percentile of half a minute) and is not much quieter than the loud frames of that stretch; clicks shorter
// than 0.1 s are dropped and pauses shorter than 0.3 s are bridged. Steady noise and silence give nothing.
[[nodiscard]] std::vector<FrameRange> findSpeech(std::span<const float> levels);

// The loud stretches in which a network that knows speech from other sounds heard speech for long enough, and what it
// heard elsewhere: where nothing stood out, and for a while amid other sounds. The loudness knows the borders better,
// and the network what is said between them.
[[nodiscard]] std::vector<FrameRange> confirmedSpeech(std::span<const FrameRange> loud,
                                                      std::span<const FrameRange> heard);

} // namespace corvane
