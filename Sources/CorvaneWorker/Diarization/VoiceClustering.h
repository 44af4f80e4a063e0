// Groups voice vectors into speakers. Pure functions; any thread.
#pragma once

#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

// The number of speakers within the limits, by the largest gap between the eigenvalues of the Laplacian of a pruned
// affinity (normalised maximum eigengap; Park and others, 2020). Rows are vectors of unit length, 600 at most.
[[nodiscard]] int estimateSpeakerCount(const WindowMatrix& vectors, const SpeakerLimits& limits);

// Ward's hierarchical clustering down to `count` groups; a group number for each row. `count` is between 1 and the
// number of rows.
[[nodiscard]] std::vector<int> clusterByWard(const WindowMatrix& vectors, int count);

// The mean of each group's rows.
[[nodiscard]] WindowMatrix groupMeans(const WindowMatrix& vectors, std::span<const int> groups, int count);

} // namespace corvane
