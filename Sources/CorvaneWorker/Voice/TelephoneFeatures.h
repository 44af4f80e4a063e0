// What the voice network hears: the cepstra of the telephone band, computed as Kaldi does it, so that they are what the
// network was trained with. Constant after construction; any thread.
#pragma once

#include <Eigen/Core>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

using FrameMatrix = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>; // rows are frames of 10 ms

inline constexpr int telephoneCepstra = 23; // the first is the logarithm of the energy

class TelephoneFeatures {
public:
    TelephoneFeatures();

    // How much sound a frame needs before and behind its own 10 ms, in samples.
    static constexpr std::int64_t marginSamples = 320;

    // Frame n is centred on sample marginSamples + 160 n + 80 of the 16 kHz samples; as many frames as fit with the
    // margins.
    [[nodiscard]] FrameMatrix compute(std::span<const std::int16_t> samples) const;

private:
    Eigen::VectorXf m_lowPass;
    Eigen::MatrixXf m_spectrum; // samples of a frame by the real and imaginary parts of the bins
    Eigen::MatrixXf m_bands;    // bins by bands
    Eigen::MatrixXf m_cosines;  // bands by cepstra
};

// Every other sample of `samples` behind a low-pass filter that leaves 0 to 3.7 kHz within 0.1 dB and keeps what would
// fold into that band 60 dB down. `filter` has an odd length; there are as many results as fit without padding.
[[nodiscard]] Eigen::VectorXf halveRate(std::span<const std::int16_t> samples, const Eigen::VectorXf& filter);
[[nodiscard]] Eigen::VectorXf halvingFilter();

} // namespace corvane
