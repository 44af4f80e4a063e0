// The loudness of a recording in frames of 10 ms, taken as its samples stream by. Owned by the decoding stage; one
// thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

inline constexpr int frameSamples = 160; // 10 ms at 16 kHz
inline constexpr double framesPerSecond = 100.0;
inline constexpr float silentLevel = -96.0F; // of a frame of zeros

class FrameLevels {
public:
    void add(std::span<const std::int16_t> samples);

    // One level per whole frame, in decibels below full scale, after a filter that takes rumble and offsets out.
    [[nodiscard]] const std::vector<float>& levels() const { return m_levels; }

private:
    std::vector<float> m_levels;
    double m_energy = 0;
    int m_filled = 0;
    float m_previous = 0;
    float m_filtered = 0;
};

} // namespace corvane
