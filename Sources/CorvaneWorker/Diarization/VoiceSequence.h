// Who speaks in which of a row of windows: a hidden Markov model whose states are speakers, each a point that is known
// only as well as its windows tell (variational Bayes over a two-covariance model, after Landini, Profant, Diez and
// Burget, 2022). Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

struct SequenceFit {
    Eigen::MatrixXf shares; // windows by speakers: how likely each speaker is; rows sum up to one
    double score = 0;       // the larger, the better the number of speakers; to be compared for the same windows only
};

// `windows` are along directions in which a voice has the variance one, and voices the variances `ratios`. `groups` is
// where to start from, numbers below `count`.
[[nodiscard]] SequenceFit fitSequence(const WindowMatrix& windows, const Eigen::RowVectorXf& ratios,
                                      std::span<const int> groups, int count);

} // namespace corvane
