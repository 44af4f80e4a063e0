#include "CorvaneWorker/Speech/SpeechDetector.h"

#include "CorvaneWorker/Speech/VoiceActivityNetwork.h"

namespace corvane {

namespace {

class LoudnessDetector : public SpeechDetector {
public:
    void add(std::span<const std::int16_t>) override {}
    DetectedSpeech finish(std::span<const float> levels) override { return {findSpeech(levels), {}}; }
};

class ConfirmedDetector : public SpeechDetector {
public:
    explicit ConfirmedDetector(std::unique_ptr<VoiceActivityNetwork> network) : m_network(std::move(network)) {}

    void add(std::span<const std::int16_t> samples) override { m_network->add(samples); }
    DetectedSpeech finish(std::span<const float> levels) override {
        auto heard = m_network->finish();
        auto speech = confirmedSpeech(findSpeech(levels), heard);
        return {std::move(speech), std::move(heard)};
    }

private:
    std::unique_ptr<VoiceActivityNetwork> m_network;
};

} // namespace

std::unique_ptr<SpeechDetector> loudnessDetector() {
    return std::make_unique<LoudnessDetector>();
}

std::unique_ptr<SpeechDetector> confirmedDetector(std::unique_ptr<VoiceActivityNetwork> network) {
    return std::make_unique<ConfirmedDetector>(std::move(network));
}

} // namespace corvane
