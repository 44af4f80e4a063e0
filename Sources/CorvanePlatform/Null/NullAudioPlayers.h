// No sound card and no sound server: nothing can be played. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioPlayer.h"

namespace corvane {

class NullAudioPlayers final : public AudioPlayers {
public:
    [[nodiscard]] std::unique_ptr<AudioPlayer> open(const QString&) override {
        throw AudioPlayerError(QStringLiteral("Corvane was started without sound, so it plays nothing."));
    }
};

} // namespace corvane
