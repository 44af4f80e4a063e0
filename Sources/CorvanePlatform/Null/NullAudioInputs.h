// No sound card and no sound server: nothing can be recorded, and every call says so. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"

namespace corvane {

class NullAudioInputs final : public AudioInputs {
public:
    [[nodiscard]] std::unique_ptr<AudioInput> microphone() override { return std::make_unique<Input>(); }
    [[nodiscard]] std::unique_ptr<AudioInput> systemAudio() override { return std::make_unique<Input>(); }
    [[nodiscard]] AudioDevices devices() override { fail(); }

private:
    class Input final : public AudioInput {
    public:
        [[nodiscard]] AudioFormat format() override { fail(); }
        void start(BufferHandler, EventHandler) override { fail(); }
        void pause() override {}
        void resume() override { fail(); }
        void stop() override {}
    };

    [[noreturn]] static void fail() {
        throw AudioInputError(QStringLiteral("Corvane was started without sound, so it records nothing."));
    }
};

} // namespace corvane
