// Tells speech from other sounds with a small neural network (Silero), as the samples stream by. Made and used by the
// decoding stage; one thread.
#pragma once

#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct SherpaOnnxVoiceActivityDetector;

namespace corvane {

struct InferenceRuntime;

class VoiceActivityNetwork {
public:
    // Null if the library or its model is not installed, or refuses to load.
    [[nodiscard]] static std::unique_ptr<VoiceActivityNetwork> load();
    ~VoiceActivityNetwork();
    VoiceActivityNetwork(const VoiceActivityNetwork&) = delete;
    VoiceActivityNetwork& operator=(const VoiceActivityNetwork&) = delete;

    void add(std::span<const std::int16_t> samples);

    // After the last sample: the stretches of speech, in order and apart from each other.
    [[nodiscard]] std::vector<FrameRange> finish();

private:
    VoiceActivityNetwork(const InferenceRuntime& runtime, const SherpaOnnxVoiceActivityDetector* detector);
    void takeSegments();

    const InferenceRuntime& m_runtime;
    const SherpaOnnxVoiceActivityDetector* m_detector;
    std::vector<float> m_block;
    std::vector<FrameRange> m_speech;
};

} // namespace corvane
