// Who speaks in which of a row of windows: a hidden Markov model whose states are speakers, each a point that is known
// only as well as its windows tell (variational Bayes over a two-covariance model, after Landini, Profant, Diez and
// Burget, 2022). Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/VoiceWindows.h"

#include <vector>

namespace corvane {

struct VoiceSequence {
    // `windows` are along directions in which a voice has the variance one, and those of all people `variances`.
    VoiceSequence(const WindowMatrix& windows, const Eigen::RowVectorXf& variances);

    Eigen::RowVectorXd ratios;
    Eigen::MatrixXd scaled; // the windows, each direction by the square root of its ratio
};

struct SequenceFit {
    Eigen::MatrixXd shares; // windows by speakers: how likely each speaker is; rows sum up to one
    double score = 0;       // the larger, the better the number of speakers; to be compared for the same windows only
};

// `shares` is where to start from, with a column for each speaker.
[[nodiscard]] SequenceFit fitSequence(const VoiceSequence& sequence, Eigen::MatrixXd shares);

// Each window with one speaker, numbered below `count`, and a little with all others.
[[nodiscard]] Eigen::MatrixXd sharesOf(std::span<const int> groups, int count);

// The shares with those two speakers made one who are most likely the same. There are at least two.
[[nodiscard]] Eigen::MatrixXd withOneSpeakerLess(const VoiceSequence& sequence, const Eigen::MatrixXd& shares);

// The shares with two speakers made one, who stands where `first` stood; `first` is below `second`.
[[nodiscard]] Eigen::MatrixXd joinedSpeakers(const Eigen::MatrixXd& shares, Eigen::Index first, Eigen::Index second);

// The columns of those speakers, in order, who are the likeliest of at least one window.
[[nodiscard]] std::vector<Eigen::Index> likeliestSpeakers(const Eigen::MatrixXd& shares);

} // namespace corvane
