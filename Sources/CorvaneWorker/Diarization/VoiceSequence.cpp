#include "CorvaneWorker/Diarization/VoiceSequence.h"

#include <cmath>
#include <limits>
#include <set>

namespace corvane {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

// Windows overlap and neighbours sound alike: each counts for less than one observation.
constexpr double evidence = 0.4;
// How much a speaker has to differ from the average one to be worth it: little while the speakers are given, more when
// their number is chosen. Both were chosen on voice-lab's tuning set.
constexpr double cautionInFitting = 1.0;
constexpr double cautionInChoosing = 3.0;
constexpr double stay = 0.98; // the chance that the next window, a quarter of a second later, is of the same speaker
constexpr int passes = 8;
constexpr double certainty = 0.9; // of the groups that it starts from

struct Voices {
    MatrixXd means;  // speakers by directions
    MatrixXd spread; // the variance that is left of each
};

Voices voicesOf(const VoiceSequence& sequence, const MatrixXd& shares, double caution) {
    const double weight = evidence / caution;
    const VectorXd sizes = shares.colwise().sum();
    Voices voices;
    voices.spread = (1.0 + weight * (sizes * sequence.ratios).array()).inverse();
    voices.means = weight * voices.spread.cwiseProduct(shares.transpose() * sequence.scaled);
    return voices;
}

// The logarithm of how well each window fits each speaker, less what does not depend on the speaker.
MatrixXd fitOf(const VoiceSequence& sequence, const Voices& voices) {
    const VectorXd cost = (voices.spread + voices.means.cwiseAbs2()) * sequence.ratios.transpose() / 2.0;
    return evidence * ((sequence.scaled * voices.means.transpose()).rowwise() - cost.transpose());
}

// Forward and backward over the windows; the shares, and the logarithm of the likelihood of all.
double decode(const MatrixXd& fit, MatrixXd& shares) {
    const Index count = fit.cols();
    const double change = (1.0 - stay) / static_cast<double>(count);
    const VectorXd highest = fit.rowwise().maxCoeff();
    const MatrixXd chance = (fit.colwise() - highest).array().exp();
    MatrixXd forward(fit.rows(), count);
    VectorXd scale(fit.rows());
    for (Index row = 0; row < fit.rows(); ++row) {
        Eigen::RowVectorXd reached = Eigen::RowVectorXd::Constant(count, 1.0 / static_cast<double>(count));
        if (row > 0)
            reached = (stay * forward.row(row - 1)).array() + change;
        forward.row(row) = reached.cwiseProduct(chance.row(row));
        scale[row] = forward.row(row).sum();
        forward.row(row) /= scale[row];
    }
    Eigen::RowVectorXd backward = Eigen::RowVectorXd::Ones(count);
    shares.resize(fit.rows(), count);
    for (Index row = fit.rows() - 1; row >= 0; --row) {
        shares.row(row) = forward.row(row).cwiseProduct(backward);
        shares.row(row) /= shares.row(row).sum();
        const Eigen::RowVectorXd next = chance.row(row).cwiseProduct(backward);
        backward = ((stay * next).array() + change * next.sum()) / scale[row];
    }
    return scale.array().log().sum() + highest.sum();
}

// How much better the windows of each speaker are explained by a voice of their own than by the average one.
VectorXd worthOf(const MatrixXd& sums, const VectorXd& sizes, const Eigen::RowVectorXd& ratios) {
    constexpr double weight = evidence / cautionInChoosing;
    const Eigen::ArrayXXd precision = 1.0 + weight * (sizes * ratios).array();
    return cautionInChoosing / 2.0 * ((weight * sums).array().square() / precision - precision.log()).rowwise().sum();
}

} // namespace

VoiceSequence::VoiceSequence(const WindowMatrix& windows, const Eigen::RowVectorXf& variances)
    : ratios(variances.cast<double>()), scaled(windows.cast<double>() * ratios.cwiseSqrt().asDiagonal()) {}

SequenceFit fitSequence(const VoiceSequence& sequence, MatrixXd shares) {
    for (int pass = 0; pass < passes; ++pass)
        (void)decode(fitOf(sequence, voicesOf(sequence, shares, cautionInFitting)), shares);
    const Voices voices = voicesOf(sequence, shares, cautionInChoosing);
    MatrixXd chosen;
    const double likelihood = decode(fitOf(sequence, voices), chosen);
    // Less the distance of the speakers from the average one (Kullback and Leibler's).
    const double cost =
        (voices.spread.array().log() - voices.spread.array() - voices.means.array().square() + 1.0).sum();
    return {std::move(shares), likelihood + cautionInChoosing / 2.0 * cost};
}

MatrixXd sharesOf(std::span<const int> groups, int count) {
    MatrixXd shares = MatrixXd::Constant(static_cast<Index>(groups.size()), count, (1.0 - certainty) / count);
    for (std::size_t row = 0; row < groups.size(); ++row)
        shares(static_cast<Index>(row), groups[row]) += certainty;
    return shares;
}

MatrixXd withOneSpeakerLess(const VoiceSequence& sequence, const MatrixXd& shares) {
    const MatrixXd sums = shares.transpose() * sequence.scaled;
    const VectorXd sizes = shares.colwise().sum();
    const VectorXd worth = worthOf(sums, sizes, sequence.ratios);
    Index first = 0;
    Index second = 1;
    double best = -std::numeric_limits<double>::max();
    for (Index right = 1; right < shares.cols(); ++right)
        for (Index left = 0; left < right; ++left) {
            const VectorXd size = VectorXd::Constant(1, sizes[left] + sizes[right]);
            const double gain =
                worthOf(sums.row(left) + sums.row(right), size, sequence.ratios)[0] - worth[left] - worth[right];
            if (gain > best) {
                best = gain;
                first = left;
                second = right;
            }
        }
    return joinedSpeakers(shares, first, second);
}

MatrixXd joinedSpeakers(const MatrixXd& shares, Index first, Index second) {
    MatrixXd joined(shares.rows(), shares.cols() - 1);
    joined << shares.leftCols(second), shares.rightCols(shares.cols() - second - 1);
    joined.col(first) += shares.col(second);
    return joined;
}

std::vector<Index> likeliestSpeakers(const MatrixXd& shares) {
    std::set<Index> speakers;
    for (Index row = 0; row < shares.rows(); ++row) {
        Index likeliest = 0;
        shares.row(row).maxCoeff(&likeliest);
        speakers.insert(likeliest);
    }
    return {speakers.begin(), speakers.end()};
}

} // namespace corvane
