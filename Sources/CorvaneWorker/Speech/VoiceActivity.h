// Where somebody speaks: decides frame by frame from the loudness, and cuts the recording at its silences into regions
// that a recogniser takes one by one. Pure functions; any thread.
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

struct RegionLimits {
    std::int64_t paddingFrames = 20;   // kept before and behind the speech
    std::int64_t joinedPause = 50;     // a shorter pause does not end a region
    std::int64_t longestFrames = 2000; // a longer region is cut at its quietest point
};

// A piece of the recording for the recogniser.
struct SpeechRegion {
    FrameRange sound;  // what it listens to
    FrameRange speech; // the part of that in which words can be; the rest is padding

    friend bool operator==(const SpeechRegion&, const SpeechRegion&) = default;
};

// Regions for the recogniser: stretches joined over short pauses, padded, and cut where they are too long.
[[nodiscard]] std::vector<SpeechRegion> speechRegions(std::span<const FrameRange> speech, std::span<const float> levels,
                                                      const RegionLimits& limits = {});

} // namespace corvane
