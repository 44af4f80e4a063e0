#include "CorvanePlatform/Linux/Audio/SoxrResampler.h"

#include "CorvaneContract/Text/UserText.h"

namespace corvane {

SoxrResampler::SoxrResampler(int fromRate, int toRate) {
    const auto samples = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const auto quality = soxr_quality_spec(SOXR_HQ, 0);
    const auto oneThread = soxr_runtime_spec(1);
    soxr_error_t error = nullptr;
    if (fromRate > 0 && toRate > 0)
        m_soxr.reset(soxr_create(fromRate, toRate, 1, &error, &samples, &quality, &oneThread));
    if (!m_soxr || error)
        throw AudioFileError(UserText::tr("Cannot change the sample rate from %1 to %2").arg(fromRate).arg(toRate));
}

AudioResampler::Step SoxrResampler::process(std::span<const float> input, std::span<float> output) {
    Step step;
    const soxr_error_t error = soxr_process(m_soxr.get(), input.empty() ? nullptr : input.data(), input.size(),
                                            &step.consumed, output.data(), output.size(), &step.produced);
    if (error)
        throw AudioFileError(UserText::tr("Changing the sample rate failed: %1").arg(QString::fromUtf8(error)));
    return step;
}

} // namespace corvane
