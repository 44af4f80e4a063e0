// Groups voice vectors into speakers. Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

// All rows, or as many of them as can be clustered in reasonable time, evenly chosen.
[[nodiscard]] WindowMatrix evenlyChosenRows(const WindowMatrix& vectors);

// Ward's hierarchical clustering: element n - 1 has a group number below n for each row, for n from 1 to `most` groups,
// or to the number of rows if that is less.
[[nodiscard]] std::vector<std::vector<int>> clusterByWard(const WindowMatrix& vectors, int most);

// The mean of each group's rows.
[[nodiscard]] WindowMatrix groupMeans(const WindowMatrix& vectors, std::span<const int> groups, int count);

// The unit vectors that k-means on the sphere comes to from the given means in a few passes.
[[nodiscard]] WindowMatrix refinedDirections(const WindowMatrix& unitVectors, WindowMatrix means);

// For each row, the mean with the largest cosine.
[[nodiscard]] std::vector<int> nearestDirections(const WindowMatrix& unitVectors, const WindowMatrix& directions);

// How much more often than by chance the next window behind a window, without overlap and without a pause, is of the
// same group: Cohen's kappa of the group in which that holds least, below 1 and the lower the fewer windows show it.
// People go on talking for a while; where one voice has been cut in two, the pieces alternate.
[[nodiscard]] double groupPersistence(std::span<const FrameRange> windows, std::span<const int> groups, int count);

} // namespace corvane
