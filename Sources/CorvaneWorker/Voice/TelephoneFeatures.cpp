#include "CorvaneWorker/Voice/TelephoneFeatures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace corvane {

namespace {

using Index = Eigen::Index;

// All of this is mfcc.conf of the model and Kaldi's defaults.
constexpr Index frameLength = 200; // 25 ms at 8 kHz
constexpr Index frameShift = 80;
constexpr Index transformSize = 256;
constexpr Index binCount = transformSize / 2;
constexpr Index bandCount = 23;
constexpr float lowestHertz = 20.0F;
constexpr float highestHertz = 3700.0F;
constexpr double preEmphasis = 0.97;
constexpr float lifter = 22.0F;
constexpr float pi = std::numbers::pi_v<float>;

constexpr Index filterReach = 56; // samples at 16 kHz to either side
constexpr double filterBeta = 6.5;
constexpr double filterCutoff = 3975.0 / 16000.0;

// Of the first kind, order zero, by its power series.
double besselOf(double x) {
    double sum = 1.0;
    double term = 1.0;
    for (int index = 1; index < 40; ++index) {
        term *= (x / 2.0 / index) * (x / 2.0 / index);
        sum += term;
    }
    return sum;
}

// Taking the mean away, pre-emphasis, Povey's window and the Fourier transform are linear: one matrix does them all.
Eigen::MatrixXf spectrumMatrix() {
    const Eigen::MatrixXd centred = Eigen::MatrixXd::Identity(frameLength, frameLength).array() - 1.0 / frameLength;
    Eigen::MatrixXd emphasised = centred;
    for (Index row = 0; row < frameLength; ++row)
        emphasised.row(row) -= preEmphasis * centred.row(std::max<Index>(0, row - 1));
    Eigen::MatrixXd transform(2 * binCount, frameLength);
    for (Index sample = 0; sample < frameLength; ++sample) {
        const double turn = 2.0 * std::numbers::pi;
        const double window =
            std::pow(0.5 - 0.5 * std::cos(turn * static_cast<double>(sample) / (frameLength - 1)), 0.85);
        for (Index bin = 0; bin < binCount; ++bin) {
            const double angle = turn * static_cast<double>(bin * sample) / transformSize;
            transform(bin, sample) = window * std::cos(angle);
            transform(binCount + bin, sample) = window * std::sin(angle);
        }
    }
    return (transform * emphasised).transpose().cast<float>();
}

float melOf(float hertz) {
    return 1127.0F * std::log1p(hertz / 700.0F);
}

// Triangles over the mel scale.
Eigen::MatrixXf bandMatrix() {
    const float low = melOf(lowestHertz);
    const float step = (melOf(highestHertz) - low) / (bandCount + 1);
    Eigen::MatrixXf bands(binCount, bandCount);
    for (Index bin = 0; bin < binCount; ++bin)
        for (Index band = 0; band < bandCount; ++band) {
            const float mel = melOf(static_cast<float>(bin) * 8000.0F / transformSize);
            const float position = (mel - low) / step - static_cast<float>(band);
            bands(bin, band) = std::max(0.0F, std::min(position, 2.0F - position));
        }
    return bands;
}

Eigen::MatrixXf cosineMatrix() {
    Eigen::MatrixXf cosines(bandCount, telephoneCepstra);
    for (Index band = 0; band < bandCount; ++band)
        for (Index order = 0; order < telephoneCepstra; ++order) {
            const auto number = static_cast<float>(order);
            const float lifted = 1.0F + 0.5F * lifter * std::sin(pi * number / lifter);
            const float scale = std::sqrt((order == 0 ? 1.0F : 2.0F) / bandCount);
            cosines(band, order) =
                lifted * scale * std::cos(pi / bandCount * (static_cast<float>(band) + 0.5F) * number);
        }
    return cosines;
}

} // namespace

Eigen::VectorXf halvingFilter() {
    Eigen::VectorXd filter(2 * filterReach + 1);
    for (Index tap = -filterReach; tap <= filterReach; ++tap) {
        const double place = static_cast<double>(tap) / (filterReach + 1);
        const double window = besselOf(filterBeta * std::sqrt(1.0 - place * place)) / besselOf(filterBeta);
        const double angle = 2.0 * std::numbers::pi * filterCutoff * static_cast<double>(tap);
        filter[tap + filterReach] = window * (tap == 0 ? 1.0 : std::sin(angle) / angle);
    }
    return (filter / filter.sum()).cast<float>();
}

Eigen::VectorXf halveRate(std::span<const std::int16_t> samples, const Eigen::VectorXf& filter) {
    const Eigen::VectorXf input = Eigen::Map<const Eigen::Matrix<std::int16_t, Eigen::Dynamic, 1>>(
                                      samples.data(), static_cast<Index>(samples.size()))
                                      .cast<float>();
    const Index count = std::max<Index>(0, (input.size() - filter.size()) / 2 + 1);
    Eigen::VectorXf output(count);
    for (Index index = 0; index < count; ++index)
        output[index] = input.segment(2 * index, filter.size()).dot(filter);
    return output;
}

TelephoneFeatures::TelephoneFeatures()
    : m_lowPass(halvingFilter()), m_spectrum(spectrumMatrix()), m_bands(bandMatrix()), m_cosines(cosineMatrix()) {}

FrameMatrix TelephoneFeatures::compute(std::span<const std::int16_t> samples) const {
    const Index frames = std::max<Index>(0, (static_cast<Index>(samples.size()) - 2 * marginSamples) / 160);
    if (frames == 0)
        return FrameMatrix(0, telephoneCepstra);
    // The first frame begins half of what is left of its length before its own 10 ms.
    constexpr Index lead = marginSamples - filterReach - (frameLength - frameShift);
    const Eigen::VectorXf sound = halveRate(samples.subspan(lead), m_lowPass);
    using Frames = Eigen::Map<const FrameMatrix, 0, Eigen::OuterStride<>>;
    const Frames overlapping(sound.data(), frames, frameLength, Eigen::OuterStride<>(frameShift));
    const FrameMatrix spectrum = overlapping * m_spectrum;
    const FrameMatrix power = spectrum.leftCols(binCount).cwiseAbs2() + spectrum.rightCols(binCount).cwiseAbs2();
    const FrameMatrix bands = (power * m_bands).array().max(std::numeric_limits<float>::epsilon()).log();
    FrameMatrix cepstra = bands * m_cosines;
    for (Index frame = 0; frame < frames; ++frame) {
        const auto part = overlapping.row(frame);
        const float energy = (part.array() - part.mean()).square().sum();
        cepstra(frame, 0) = std::log(std::max(energy, std::numeric_limits<float>::epsilon()));
    }
    return cepstra;
}

} // namespace corvane
