#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>

namespace corvane {

void FrameLevels::add(std::span<const std::int16_t> samples) {
    constexpr float preEmphasis = 0.97F;
    constexpr float fullScale = 32768.0F;
    for (const std::int16_t raw : samples) {
        const float sample = static_cast<float>(raw) / fullScale;
        const float emphasised = sample - preEmphasis * m_previous;
        m_previous = sample;
        m_energy += static_cast<double>(emphasised) * static_cast<double>(emphasised);
        if (++m_filled < frameSamples)
            continue;
        const double level = 10.0 * std::log10(m_energy / frameSamples + 1e-12);
        m_levels.push_back(std::max(silentLevel, static_cast<float>(level)));
        m_energy = 0;
        m_filled = 0;
    }
}

} // namespace corvane
