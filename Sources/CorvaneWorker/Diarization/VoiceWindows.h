// Voices as vectors: windows of speech, their statistics, and the projection that makes vectors of one voice alike and
// of two voices different. Pure functions of their inputs, except for scratch space; one thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <Eigen/Core>
#include <functional>
#include <span>
#include <vector>

namespace corvane {

// Rows are windows.
using WindowMatrix = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

struct VoiceWindows {
    std::vector<FrameRange> ranges;
    WindowMatrix vectors; // one row per range
};

struct WindowPlan {
    std::int64_t hop = 75;      // frames from one window to the next
    std::int64_t shortest = 50; // stretches with fewer frames get no window
};

// For the vector of a voice by the network: short answers count too, and may be all that somebody says.
inline constexpr WindowPlan voiceWindows{.hop = 75, .shortest = 10};

// Windows of 1.5 s within each stretch; a stretch shorter than that is one window.
[[nodiscard]] std::vector<FrameRange> placeWindows(std::span<const FrameRange> speech, const WindowPlan& plan = {});

// The statistics of every window that has enough clear speech: cepstra and their movement, pitch. Not yet projected.
[[nodiscard]] VoiceWindows measureWindows(const SampleStore& samples, std::span<const FrameRange> speech,
                                          const std::function<void(double)>& progress);

// Minus the mean of the background voices, along the directions that tell voices apart, each weighed by how well it
// does that for a single window; both were learned from other recordings (VoiceBackground.h).
[[nodiscard]] WindowMatrix projectWindows(const WindowMatrix& statistics);

// One voice from all the windows of one speaker: a vector of unit length, to be compared by its cosine. Here every
// direction counts alike in which the mean of some windows tells voices apart at all, so that no single trait decides.
// There is at least one window.
[[nodiscard]] Eigen::RowVectorXd voiceVector(const WindowMatrix& statistics);

} // namespace corvane
