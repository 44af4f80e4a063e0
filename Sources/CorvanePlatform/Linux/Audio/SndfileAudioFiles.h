// Audio files of the core on Linux: WAV files that survive a kill, read through libsndfile, and soxr. Stateless, any
// thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"

namespace corvane {

class SndfileAudioFiles final : public AudioFiles {
public:
    [[nodiscard]] std::unique_ptr<AudioFileWriter> create(const QString& path, const AudioFormat& format) override;
    [[nodiscard]] std::unique_ptr<AudioFileReader> open(const QString& path) override;
    [[nodiscard]] std::unique_ptr<AudioResampler> resampler(int fromRate, int toRate) override;
};

} // namespace corvane
