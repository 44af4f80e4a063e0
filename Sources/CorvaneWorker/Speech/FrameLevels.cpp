#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>

namespace corvane {

void FrameLevels::add(std::span<const std::int16_t> samples) {
    constexpr float leak = 0.96F; // of a high-pass of the first order at about 100 Hz
    constexpr float fullScale = 32768.0F;
    for (const std::int16_t raw : samples) {
        const float sample = static_cast<float>(raw) / fullScale;
        m_filtered = sample - m_previous + leak * m_filtered;
        m_previous = sample;
        m_energy += static_cast<double>(m_filtered) * static_cast<double>(m_filtered);
        if (++m_filled < frameSamples)
            continue;
        const double level = 10.0 * std::log10(m_energy / frameSamples + 1e-12);
        m_levels.push_back(std::max(silentLevel, static_cast<float>(level)));
        m_energy = 0;
        m_filled = 0;
    }
}

} // namespace corvane
