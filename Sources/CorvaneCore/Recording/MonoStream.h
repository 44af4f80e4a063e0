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

    // Whether seek() may jump. With rates that have no short common period the resampler rounds its clock, and a sample
    // depends a little on where reading began.
    [[nodiscard]] bool seeksAnywhere() const { return m_period.output <= longestPeriod; }
    // The sample that the next read begins with, at the wanted rate; behind the end there is nothing to read. The
    // samples are those of reading from the beginning, but for the rounding of the resampler near -130 dB, and always
    // the same for one position. Where it may not jump, only to where reading has come to, counting what was asked for.
    // Throws AudioFileError.
    void seek(std::int64_t position);

private:
    // So many samples of the file last exactly as long as so many at the wanted rate.
    struct Period {
        std::int64_t input = 1;
        std::int64_t output = 1;
    };
    // soxr counts the phases of its filter exactly up to at least 2000; with 6000, as from 44.056 kHz, it drifts.
    static constexpr std::int64_t longestPeriod = 1024;

    [[nodiscard]] std::size_t readResampled(std::span<float> samples);
    [[nodiscard]] std::size_t readMono(std::span<float> samples);

    AudioFiles& m_files;
    AudioFileReader& m_reader;
    int m_sampleRate;
    Period m_period;
    std::int64_t m_position = 0;
    std::int64_t m_skipped = 0; // samples still to be dropped before those that were asked for
    std::size_t m_channels;
    std::vector<float> m_interleaved;
    std::unique_ptr<AudioResampler> m_resampler; // absent where the rate fits
    std::vector<float> m_pending;
    std::size_t m_pendingStart = 0;
    std::size_t m_pendingCount = 0;
    bool m_inputEnded = false;
};

// The bytes of interleaved samples as `format` has them. Values beyond full scale are clipped where it is of integers.
[[nodiscard]] std::vector<std::byte> encodeSamples(std::span<const float> samples, const AudioFormat& format);

// Interleaved frames with the same sound in every channel.
[[nodiscard]] std::vector<float> spreadMono(std::span<const float> samples, int channels);

} // namespace corvane
