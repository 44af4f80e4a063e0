// What a voice sounds like, frame by frame: cepstra and pitch. Owned by whoever computes voice windows; keeps scratch
// space, so one object per thread.
#pragma once

#include <Eigen/Core>
#include <complex>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

inline constexpr int cepstrumSize = 20; // c0 to c19

// One row per frame of 10 ms.
struct VoiceFrames {
    Eigen::Matrix<float, Eigen::Dynamic, cepstrumSize, Eigen::RowMajor> cepstra;
    Eigen::VectorXf logPitch; // natural logarithm of Hz; 0 where the frame has no clear pitch
    Eigen::VectorXf level;    // decibels below full scale
};

class VoiceFeatures {
public:
    VoiceFeatures();

    // Frame n is centred on sample 160 n + 80 of the 16 kHz samples; beyond both ends there is silence.
    [[nodiscard]] VoiceFrames compute(std::span<const std::int16_t> samples);

private:
    void computeCepstrum(const std::vector<float>& padded, std::size_t first, Eigen::Ref<Eigen::RowVectorXf> cepstrum,
                         float& level);
    [[nodiscard]] float computeLogPitch(const std::vector<float>& padded, std::size_t first);
    void transform(); // fast Fourier transform of m_spectrum in place

    std::vector<float> m_window;
    std::vector<std::complex<float>> m_twiddles;
    std::vector<std::size_t> m_reversed;
    std::vector<std::complex<float>> m_spectrum;
    Eigen::MatrixXf m_melWeights; // bands by bins
    Eigen::MatrixXf m_cosines;    // cepstra by bands
};

} // namespace corvane
