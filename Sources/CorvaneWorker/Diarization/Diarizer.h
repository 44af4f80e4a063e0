// Tells the speakers of a recording apart. Pure in its inputs: the same sound gives the same turns. One thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Diarization/SpeakerTurn.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <QString>

#include <functional>
#include <span>
#include <vector>

namespace corvane {

// For metadata.
[[nodiscard]] QString diarizationName();

// Turns in order that cover the speech, each with one speaker. There are as many speakers as the limits ask for where
// the speech has enough windows to tell them, and at least one where there is speech.
[[nodiscard]] std::vector<SpeakerTurn> diarize(const SampleStore& samples, std::span<const FrameRange> speech,
                                               const SpeakerLimits& limits,
                                               const std::function<void(double)>& progress);

} // namespace corvane
