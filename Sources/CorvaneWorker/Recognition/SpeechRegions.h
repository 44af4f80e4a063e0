// Cuts a recording into the pieces that a recogniser takes one by one. Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/SpeakerTurn.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

struct RegionLimits {
    std::int64_t paddingFrames = 20;   // kept before and behind the speech
    std::int64_t joinedPause = 50;     // a shorter pause of one speaker does not end a region
    std::int64_t longestFrames = 2000; // a longer region is cut at its quietest point
};

// A piece of the recording for the recogniser, in which one speaker talks.
struct SpeechRegion {
    FrameRange sound;  // what it listens to
    FrameRange speech; // the part of that in which words can be; the rest is padding
    int speaker = 0;

    friend bool operator==(const SpeechRegion&, const SpeechRegion&) = default;
};

// The turns, which are in order, as regions: joined over short pauses of the same speaker, padded as far as nobody else
// is heard, and cut where they are too long.
[[nodiscard]] std::vector<SpeechRegion> speechRegions(std::span<const SpeakerTurn> turns, std::span<const float> levels,
                                                      const RegionLimits& limits = {});

} // namespace corvane
