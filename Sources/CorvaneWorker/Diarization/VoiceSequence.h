// Who speaks in which of a row of windows: a hidden Markov model whose states are speakers, each a point that is known
// only as well as its windows tell (variational Bayes over a two-covariance model, after Landini, Profant, Diez and
// Burget, 2022). Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

struct SequenceFit {
    Eigen::MatrixXd shares; // windows by speakers: how likely each speaker is; rows sum up to one
    double score = 0;       // the larger, the better the number of speakers; to be compared for the same windows only
};

// `windows` are along directions in which a voice has the variance one, and voices the variances `ratios`. `shares` is
// where to start from, with a column for each speaker.
[[nodiscard]] SequenceFit fitSequence(const WindowMatrix& windows, const Eigen::RowVectorXf& ratios,
                                      Eigen::MatrixXd shares);

// Each window with one speaker, numbered below `count`, and a little with all others.
[[nodiscard]] Eigen::MatrixXd sharesOf(std::span<const int> groups, int count);

// The shares with those two speakers made one who are most likely the same. There are at least two.
[[nodiscard]] Eigen::MatrixXd withOneSpeakerLess(const WindowMatrix& windows, const Eigen::RowVectorXf& ratios,
                                                 const Eigen::MatrixXd& shares);

// The shares with two speakers made one, who stands where `first` stood; `first` is below `second`.
[[nodiscard]] Eigen::MatrixXd joinedSpeakers(const Eigen::MatrixXd& shares, Eigen::Index first, Eigen::Index second);

// The speakers who are the likeliest of at least one window.
[[nodiscard]] int likeliestSpeakers(const Eigen::MatrixXd& shares);

} // namespace corvane
