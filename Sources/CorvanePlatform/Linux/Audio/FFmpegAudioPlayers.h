// Playback of audio and movie files: decoded by FFmpeg's libraries, heard through libpulse. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioPlayer.h"

namespace corvane {

class FFmpegAudioPlayers final : public AudioPlayers {
public:
    [[nodiscard]] std::unique_ptr<AudioPlayer> open(const QString& path) override;
};

} // namespace corvane
