// Microphone and system audio through libpulse, which PulseAudio and PipeWire both serve. Main thread; every running
// input has a thread of its own.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"

namespace corvane {

class PulseAudioInputs final : public AudioInputs {
public:
    [[nodiscard]] std::unique_ptr<AudioInput> microphone() override;
    [[nodiscard]] std::unique_ptr<AudioInput> systemAudio() override;
    [[nodiscard]] AudioDevices devices() override;
};

} // namespace corvane
