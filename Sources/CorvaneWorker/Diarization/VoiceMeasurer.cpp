#include "CorvaneWorker/Diarization/VoiceMeasurer.h"

#include "CorvaneWorker/Diarization/VoiceWindows.h"
#include "CorvaneWorker/Voice/VoiceModel.h"
#include "CorvaneWorker/Voice/VoiceTable.h"

namespace corvane {

namespace {

void ignoreProgress(double) {}

class NetworkMeasurer : public VoiceMeasurer {
public:
    explicit NetworkMeasurer(const VoiceModel& model) : m_model(model) {}

    MeasuredVoice measure(const SampleStore& samples, std::span<const FrameRange> speech) const override {
        const auto windows = placeWindows(speech, voiceWindows);
        if (windows.empty())
            return {};
        return {networkVoiceVector(m_model.measure(samples, speech, windows, ignoreProgress).colwise().mean()),
                static_cast<std::int64_t>(windows.size())};
    }

private:
    const VoiceModel& m_model;
};

class PlainMeasurer : public VoiceMeasurer {
public:
    MeasuredVoice measure(const SampleStore& samples, std::span<const FrameRange> speech) const override {
        const VoiceWindows windows = measureWindows(samples, speech, ignoreProgress);
        if (windows.ranges.empty())
            return {};
        return {voiceVector(windows.vectors), static_cast<std::int64_t>(windows.ranges.size())};
    }
};

} // namespace

std::unique_ptr<VoiceMeasurer> networkMeasurer(const VoiceModel& model) {
    return std::make_unique<NetworkMeasurer>(model);
}

std::unique_ptr<VoiceMeasurer> plainMeasurer() {
    return std::make_unique<PlainMeasurer>();
}

} // namespace corvane
