// How samples stand in memory and in a WAV file: interleaved frames, little-endian. A value.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane {

struct AudioFormat {
    enum class Sample { unsigned8, signed16, signed24, signed32, float32 }; // signed24 is packed in three bytes

    int sampleRate = 0; // frames per second
    int channels = 0;
    Sample sample = Sample::float32;

    [[nodiscard]] constexpr std::size_t bytesPerSample() const {
        switch (sample) {
        case Sample::unsigned8:
            return 1;
        case Sample::signed16:
            return 2;
        case Sample::signed24:
            return 3;
        default:
            return 4;
        }
    }
    [[nodiscard]] constexpr std::size_t bytesPerFrame() const {
        return bytesPerSample() * static_cast<std::size_t>(channels);
    }
    [[nodiscard]] constexpr bool isValid() const { return sampleRate > 0 && channels > 0; }

    friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

} // namespace corvane
