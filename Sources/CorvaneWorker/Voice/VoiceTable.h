// What is known about the vectors of the voice network: where voices lie, along which directions they differ, and what
// a room or a microphone does to them. Made by `voice-lab learn` from the recordings of Debian packages
// (docs/decisions). Constant; any thread.
#pragma once

#include <Eigen/Core>

namespace corvane {

inline constexpr int networkVectorSize = 128;
inline constexpr int voiceDirections = 40;
inline constexpr int channelDirections = 32;

struct VoiceTable {
    Eigen::RowVectorXf mean;    // of all voices
    Eigen::RowVectorXf ratios;  // the variance between voices along each of `directions`, of single windows, where that
                                // within a voice in one recording is one
    Eigen::MatrixXf directions; // networkVectorSize by voiceDirections
    Eigen::RowVectorXf damping; // how much of each of `channels` has to go, 0 to 1
    Eigen::MatrixXf channels;   // networkVectorSize by channelDirections, of length one: what varies with the recording
};

[[nodiscard]] const VoiceTable& voiceTable();

// The mean of one speaker's windows as a vector of unit length to be compared by its cosine, freed of what rooms and
// microphones change. Its last number is a constant that moves the cosine at which one voice is told from two to the
// application's threshold.
[[nodiscard]] Eigen::RowVectorXd networkVoiceVector(const Eigen::RowVectorXf& mean);

} // namespace corvane
