// Tells speakers apart by the best means that are installed, outside of a run: for what measures how well that is done.
// One thread.
#pragma once

#include "CorvaneWorker/Run/StageChoice.h"

namespace corvane {

[[nodiscard]] inline std::vector<SpeakerTurn> diarize(const SampleStore& samples, std::span<const FrameRange> speech,
                                                      const SpeakerLimits& limits,
                                                      const std::function<void(double)>& progress) {
    return chooseSeparator()->separate(samples, speech, limits, progress);
}

} // namespace corvane
