// Which speakers there are, and which windows of speech are whose. Pure functions; any thread.
#pragma once

#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

// `vectors` are those of the voice network, one row a window, in order. Windows by speakers: how likely each is to be
// of each; rows sum up to one. Within the limits, as far as there are windows enough. The time grows with the windows,
// and with the square of the largest number allowed.
[[nodiscard]] Eigen::MatrixXf searchSpeakers(const WindowMatrix& vectors, const SpeakerLimits& limits);

} // namespace corvane
