// An audio file read as one channel at a wanted sample rate, in bounded memory. Channels are averaged, so that a stereo
// source comes out at the level of its channels. One thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"

#include <memory>
#include <span>
#include <vector>

namespace corvane {

class MonoStream {
public:
    // Borrows the reader, which must outlive the stream.
    MonoStream(AudioFiles& files, AudioFileReader& reader, int sampleRate);

    // Fills as much as there is; fewer samples than asked for mean the end. Throws AudioFileError.
    [[nodiscard]] std::size_t read(std::span<float> samples);

private:
    [[nodiscard]] std::size_t readMono(std::span<float> samples);

    AudioFileReader& m_reader;
    std::size_t m_channels;
    std::vector<float> m_interleaved;
    std::unique_ptr<AudioResampler> m_resampler; // absent where the rate fits
    std::vector<float> m_pending;
    std::size_t m_pendingStart = 0;
    std::size_t m_pendingCount = 0;
    bool m_inputEnded = false;
};

// Interleaved frames in `format` with the same sound in every channel. Values beyond full scale are clipped where the
// format is of integers.
[[nodiscard]] std::vector<std::byte> spreadMono(std::span<const float> samples, const AudioFormat& format);

} // namespace corvane
