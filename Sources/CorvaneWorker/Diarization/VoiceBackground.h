// The table that turns window statistics into voice vectors: what voices have in common, and what varies within one.
// Made by `voice-lab train` from the recordings of Debian packages (docs/decisions). Constant; any thread.
#pragma once

#include <Eigen/Core>

namespace corvane {

inline constexpr int voiceStatisticsSize = 61; // 19 means, 20 deviations, 20 deviations of movement, 2 of pitch
inline constexpr int voiceVectorSize = 32;     // directions

// What stands in for a window without pitch: between a deep and a high voice.
inline constexpr float unknownLogPitch = 5.05F;
inline constexpr float unknownLogPitchSpread = 0.15F;

struct VoiceBackground {
    Eigen::RowVectorXf mean;    // voiceStatisticsSize
    Eigen::RowVectorXf ratios;  // voiceVectorSize; the variance between voices along each direction, of single windows,
                                // where that within a voice is one
    Eigen::MatrixXf projection; // voiceStatisticsSize by voiceVectorSize; the variance within a voice becomes one
};

[[nodiscard]] const VoiceBackground& voiceBackground();

} // namespace corvane
