// Turns the speech of one speaker into the vector by which the voice is known again: the stage of an extraction. One
// thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <Eigen/Core>
#include <memory>
#include <span>

namespace corvane {

class VoiceModel;

struct MeasuredVoice {
    Eigen::RowVectorXd vector; // of unit length; empty without windows
    std::int64_t windowCount = 0;
};

// Vectors of two measurers have different lengths, so that they are never taken for one voice.
class VoiceMeasurer {
public:
    virtual ~VoiceMeasurer() = default;

    [[nodiscard]] virtual MeasuredVoice measure(const SampleStore& samples,
                                                std::span<const FrameRange> speech) const = 0;
};

// By the voice network, which outlives the measurer.
[[nodiscard]] std::unique_ptr<VoiceMeasurer> networkMeasurer(const VoiceModel& model);
// By the statistics of the sound.
[[nodiscard]] std::unique_ptr<VoiceMeasurer> plainMeasurer();

} // namespace corvane
