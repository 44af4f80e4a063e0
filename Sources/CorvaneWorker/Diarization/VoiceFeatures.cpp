#include "CorvaneWorker/Diarization/VoiceFeatures.h"

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane {

namespace {

constexpr std::size_t windowSamples = 400; // 25 ms
constexpr std::size_t transformSize = 512;
constexpr std::size_t binCount = transformSize / 2 + 1;
constexpr int bandCount = 26;
// Of the telephone's band, so that a narrow channel does not make another voice.
constexpr float lowestHertz = 120.0F;
constexpr float highestHertz = 3800.0F;
constexpr float preEmphasis = 0.97F;

// Pitch is searched in every second sample of 40 ms.
constexpr std::size_t pitchSamples = 320;
constexpr std::size_t shortestLag = 20;   // 400 Hz at 8 kHz
constexpr std::size_t longestLag = 133;   // 60 Hz
constexpr float clearPeriodicity = 0.55F; // of the autocorrelation's peak, against its value at zero

constexpr std::size_t leadingSilence = windowSamples; // before the first sample, so that every window has its content

float melOf(float hertz) {
    return 1127.0F * std::log(1.0F + hertz / 700.0F);
}

// Triangles of equal width on the mel scale.
Eigen::MatrixXf melWeights() {
    Eigen::MatrixXf weights = Eigen::MatrixXf::Zero(bandCount, static_cast<Eigen::Index>(binCount));
    const float low = melOf(lowestHertz);
    const float step = (melOf(highestHertz) - low) / (bandCount + 1);
    for (Eigen::Index bin = 0; bin < weights.cols(); ++bin) {
        const float mel = melOf(static_cast<float>(bin) * sampleRate / transformSize);
        for (int band = 0; band < bandCount; ++band) {
            const float distance = std::abs(mel - (low + step * static_cast<float>(band + 1))) / step;
            weights(band, bin) = std::max(0.0F, 1.0F - distance);
        }
    }
    return weights;
}

// The orthonormal cosine transform of the second kind.
Eigen::MatrixXf cosines() {
    Eigen::MatrixXf matrix(cepstrumSize, bandCount);
    for (int row = 0; row < cepstrumSize; ++row)
        for (int band = 0; band < bandCount; ++band)
            matrix(row, band) = std::cos(std::numbers::pi_v<float> * static_cast<float>(row) *
                                         (static_cast<float>(band) + 0.5F) / bandCount) *
                                std::sqrt((row == 0 ? 1.0F : 2.0F) / bandCount);
    return matrix;
}

} // namespace

VoiceFeatures::VoiceFeatures()
    : m_window(windowSamples),
      m_twiddles(transformSize / 2),
      m_reversed(transformSize),
      m_spectrum(transformSize),
      m_melWeights(melWeights()),
      m_cosines(cosines()) {
    constexpr float turn = 2.0F * std::numbers::pi_v<float>;
    for (std::size_t index = 0; index < windowSamples; ++index)
        m_window[index] = 0.54F - 0.46F * std::cos(turn * static_cast<float>(index) / (windowSamples - 1));
    for (std::size_t index = 0; index < m_twiddles.size(); ++index)
        m_twiddles[index] = std::polar(1.0F, -turn * static_cast<float>(index) / transformSize);
    for (std::size_t index = 1; index < transformSize; ++index)
        m_reversed[index] = (m_reversed[index / 2] / 2) | (index % 2 == 1 ? transformSize / 2 : 0);
}

// Iterative radix 2, Cooley and Tukey.
void VoiceFeatures::transform() {
    for (std::size_t index = 0; index < transformSize; ++index)
        if (index < m_reversed[index])
            std::swap(m_spectrum[index], m_spectrum[m_reversed[index]]);
    for (std::size_t half = 1; half < transformSize; half *= 2) {
        const std::size_t stride = transformSize / (2 * half);
        for (std::size_t begin = 0; begin < transformSize; begin += 2 * half) {
            for (std::size_t index = 0; index < half; ++index) {
                const std::complex<float> twiddle = m_twiddles[index * stride];
                const std::complex<float> odd = m_spectrum[begin + half + index];
                // Written out: the library's product also handles infinities, at three times the cost.
                const std::complex<float> turned(odd.real() * twiddle.real() - odd.imag() * twiddle.imag(),
                                                 odd.real() * twiddle.imag() + odd.imag() * twiddle.real());
                m_spectrum[begin + half + index] = m_spectrum[begin + index] - turned;
                m_spectrum[begin + index] += turned;
            }
        }
    }
}

void VoiceFeatures::computeCepstrum(const std::vector<float>& padded, std::size_t first,
                                    Eigen::Ref<Eigen::RowVectorXf> cepstrum, float& level) {
    std::fill(m_spectrum.begin(), m_spectrum.end(), 0.0F);
    float energy = 0.0F;
    for (std::size_t index = 0; index < windowSamples; ++index) {
        const float sample = padded[first + index] - preEmphasis * padded[first + index - 1];
        energy += sample * sample;
        m_spectrum[index] = sample * m_window[index];
    }
    transform();
    Eigen::VectorXf power(static_cast<Eigen::Index>(binCount));
    for (std::size_t bin = 0; bin < binCount; ++bin)
        power[static_cast<Eigen::Index>(bin)] = std::norm(m_spectrum[bin]);
    const Eigen::VectorXf bands = (m_melWeights * power).array().max(1e-7F).log();
    cepstrum = (m_cosines * bands).transpose();
    level = 10.0F * std::log10(energy / windowSamples + 1e-12F);
}

// Autocorrelation by the power spectrum, divided by that of the window, as Boersma (1993) has it.
float VoiceFeatures::computeLogPitch(const std::vector<float>& padded, std::size_t first) {
    std::fill(m_spectrum.begin(), m_spectrum.end(), 0.0F);
    float mean = 0.0F;
    for (std::size_t index = 0; index < pitchSamples; ++index)
        mean += padded[first + 2 * index] / pitchSamples;
    for (std::size_t index = 0; index < pitchSamples; ++index)
        m_spectrum[index] = padded[first + 2 * index] - mean;
    transform();
    for (auto& bin : m_spectrum)
        bin = std::norm(bin);
    transform();
    const float atZero = m_spectrum[0].real();
    if (atZero <= 1e-6F)
        return 0.0F;
    const auto periodicity = [&](std::size_t lag) {
        return m_spectrum[lag].real() / atZero *
               (static_cast<float>(pitchSamples) / static_cast<float>(pitchSamples - lag));
    };
    std::size_t best = shortestLag;
    float bestScore = 0.0F;
    for (std::size_t lag = shortestLag; lag <= longestLag; ++lag) {
        // The first of nearly equal peaks is the period; the later ones are its multiples.
        const float score = periodicity(lag) - 0.0012F * static_cast<float>(lag);
        if (score > bestScore && periodicity(lag) >= periodicity(lag - 1) && periodicity(lag) >= periodicity(lag + 1)) {
            bestScore = score;
            best = lag;
        }
    }
    if (bestScore == 0.0F || periodicity(best) < clearPeriodicity)
        return 0.0F;
    return std::log(sampleRate / 2.0F / static_cast<float>(best));
}

VoiceFrames VoiceFeatures::compute(std::span<const std::int16_t> samples) {
    const std::size_t frames = samples.size() / frameSamples;
    std::vector<float> padded(leadingSilence + samples.size() + 2 * pitchSamples, 0.0F);
    std::transform(samples.begin(), samples.end(), padded.begin() + static_cast<std::ptrdiff_t>(leadingSilence),
                   [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
    VoiceFrames result;
    const auto rows = static_cast<Eigen::Index>(frames);
    result.cepstra.resize(rows, cepstrumSize);
    result.logPitch.resize(rows);
    result.level.resize(rows);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const auto row = static_cast<Eigen::Index>(frame);
        const std::size_t centre = leadingSilence + frame * frameSamples + frameSamples / 2;
        Eigen::RowVectorXf cepstrum(cepstrumSize);
        computeCepstrum(padded, centre - windowSamples / 2, cepstrum, result.level[row]);
        result.cepstra.row(row) = cepstrum;
        // Pitch moves slowly: every second frame is enough.
        result.logPitch[row] =
            frame % 2 == 1 ? result.logPitch[row - 1] : computeLogPitch(padded, centre - pitchSamples);
    }
    return result;
}

} // namespace corvane
