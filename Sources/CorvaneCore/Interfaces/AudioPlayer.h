// Playback of one audio or movie file. Main thread; the sound itself runs on a thread of the player's own.
#pragma once

#include "CorvaneContract/Error.h"

#include <QString>

#include <functional>
#include <memory>

namespace corvane {

class AudioPlayerError : public Error {
public:
    using Error::Error;
};

class AudioPlayer {
public:
    virtual ~AudioPlayer() = default; // stops

    [[nodiscard]] virtual double durationSeconds() const = 0;
    // Where the sound that is heard now stands in the file; where play() will begin while it does not play.
    [[nodiscard]] virtual double currentTimeSeconds() const = 0;
    // Clamped to the file by the caller. Takes effect at once, also while playing.
    virtual void setCurrentTime(double seconds) = 0;
    // Why nothing more is heard of a file that has not ended. On a thread of the player's own; must not call the
    // player.
    using FailureHandler = std::function<void(const QString& reason)>;
    // Plays to the end and stays there. Returns within a tenth of a second: throws AudioPlayerError if it is known by
    // then that no sound server takes the sound; the handler learns of what fails later, or of this.
    virtual void play(FailureHandler onFailure) = 0;
    virtual void stop() = 0; // safe to repeat
};

class AudioPlayers {
public:
    virtual ~AudioPlayers() = default;
    // Throws AudioPlayerError if the file cannot be read or holds no sound.
    [[nodiscard]] virtual std::unique_ptr<AudioPlayer> open(const QString& path) = 0;
};

} // namespace corvane
