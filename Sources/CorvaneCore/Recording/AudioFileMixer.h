// Renders the microphone's file and the system audio's file into the one mono file that the worker gets. Both start at
// frame zero; no attempt is made to align them otherwise. Stateless and blocking; any thread.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Recording/AudioChunkConcatenator.h"

namespace corvane {

class AudioFileMixError : public Error {
public:
    [[nodiscard]] static AudioFileMixError noInputs();
    [[nodiscard]] static AudioFileMixError renderingFailed(const QString& reason);

private:
    using Error::Error;
};

namespace AudioFileMixer {

// The format of every mix. As many frames as the longer source lasts, cut to a whole number.
inline constexpr AudioFormat format{.sampleRate = 48000, .channels = 1, .sample = AudioFormat::Sample::float32};
// The one gain: each source enters at unity and the sum is scaled. No limiter follows.
inline constexpr float outputVolume = 0.9F;

// Gives `output`. Throws AudioFileMixError or AudioFileError.
QString mix(AudioFiles& files, const QString& primary, const QString& secondary, const QString& output,
            const AudioProgress& progress = {});

} // namespace AudioFileMixer

} // namespace corvane
