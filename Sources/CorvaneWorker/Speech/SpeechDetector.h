// Finds where somebody speaks while the samples stream by: the second stage of a run, fed by the first. Made for one
// recording; one thread.
#pragma once

#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <memory>

namespace corvane {

class VoiceActivityNetwork;

// Both in order and apart from each other.
struct DetectedSpeech {
    std::vector<FrameRange> speech;
    std::vector<FrameRange> heard; // by a network that knows speech; empty without one
};

class SpeechDetector {
public:
    virtual ~SpeechDetector() = default;

    // The next samples, 16 kHz mono, in blocks of any size.
    virtual void add(std::span<const std::int16_t> samples) = 0;

    // After the last sample; `levels` are those of all frames (FrameLevels.h).
    [[nodiscard]] virtual DetectedSpeech finish(std::span<const float> levels) = 0;
};

// By the loudness alone.
[[nodiscard]] std::unique_ptr<SpeechDetector> loudnessDetector();

// By the loudness, confirmed by the network.
[[nodiscard]] std::unique_ptr<SpeechDetector> confirmedDetector(std::unique_ptr<VoiceActivityNetwork> network);

} // namespace corvane
