// Tells the speakers of a recording apart: a stage of a run. Pure in its inputs: the same sound gives the same turns.
// One thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Diarization/SpeakerTurn.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <QString>

#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

class VoiceModel;

class SpeakerSeparator {
public:
    virtual ~SpeakerSeparator() = default;

    // For metadata.
    [[nodiscard]] virtual QString name() const = 0;

    // Turns in order that cover the speech, each with one speaker. There are as many speakers as the limits ask for
    // where the speech has enough windows to tell them, and at least one where there is speech.
    [[nodiscard]] virtual std::vector<SpeakerTurn> separate(const SampleStore& samples,
                                                            std::span<const FrameRange> speech,
                                                            const SpeakerLimits& limits,
                                                            const std::function<void(double)>& progress) const = 0;
};

// By the voice network, which outlives the separator.
[[nodiscard]] std::unique_ptr<SpeakerSeparator> networkSeparator(const VoiceModel& model);
// By the statistics of the sound.
[[nodiscard]] std::unique_ptr<SpeakerSeparator> plainSeparator();
// All of the speech is one speaker's, whatever the limits.
[[nodiscard]] std::unique_ptr<SpeakerSeparator> noSeparator();

} // namespace corvane
