// Sample rate conversion by soxr at its high quality, -139 dB from its best setting at two thirds of the cost. One
// thread at a time.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"

#include <soxr.h>

#include <memory>

namespace corvane {

class SoxrResampler final : public AudioResampler {
public:
    // Frames per second, above zero. Throws AudioFileError.
    SoxrResampler(int fromRate, int toRate);

    [[nodiscard]] Step process(std::span<const float> input, std::span<float> output) override;

private:
    struct Delete {
        void operator()(soxr_t soxr) const { soxr_delete(soxr); }
    };
    std::unique_ptr<soxr, Delete> m_soxr;
};

} // namespace corvane
