#include "CorvaneWorker/Diarization/SpeakerSearch.h"

#include "CorvaneWorker/Diarization/VoiceClustering.h"
#include "CorvaneWorker/Diarization/VoiceSequence.h"
#include "CorvaneWorker/Voice/VoiceTable.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace corvane {

namespace {

using Index = Eigen::Index;
using Eigen::MatrixXd;

constexpr int further = 2; // speakers to start with, beyond the largest number that may come out
// The cosine of two voices from which on they are one. Two people of one recording came to 0.73 in voice-lab's tuning
// set, and to 0.78 in the held-out one; a voice that was split for its length alone to 0.79 and more.
constexpr double oneVoice = 0.80;
constexpr double fewestWindows = 6; // of a speaker; a cough or a laugh is nobody's voice

WindowMatrix alongDirections(const WindowMatrix& vectors) {
    return (vectors.rowwise() - voiceTable().mean) * voiceTable().directions;
}

// Goes from many speakers to few, by what the last number leads to and by a fresh start for each, and keeps what
// explains the windows best of what the limits allow.
MatrixXd likeliestShares(const WindowMatrix& windows, const SpeakerLimits& limits) {
    const Eigen::RowVectorXf& ratios = voiceTable().ratios;
    const WindowMatrix directions = windows.rowwise().normalized();
    const WindowMatrix chosen = evenlyChosenRows(directions);
    const auto levels = clusterByWard(chosen, limits.most + further);
    const int top = static_cast<int>(levels.size());
    const int least = std::min(limits.least, top);
    const auto groupsOf = [&](int count) {
        WindowMatrix means = groupMeans(chosen, levels[static_cast<std::size_t>(count - 1)], count);
        means.rowwise().normalize();
        return nearestDirections(directions, means);
    };
    SequenceFit best;
    SequenceFit current = fitSequence(windows, ratios, sharesOf(groupsOf(top), top));
    for (int count = top; count >= least; --count) {
        if (count < top) {
            current = fitSequence(windows, ratios, withOneSpeakerLess(windows, ratios, current.shares));
            SequenceFit fresh = fitSequence(windows, ratios, sharesOf(groupsOf(count), count));
            if (fresh.score > current.score)
                current = std::move(fresh);
        }
        const int heard = likeliestSpeakers(current.shares);
        if (heard >= least && heard <= limits.most && (best.shares.size() == 0 || current.score > best.score))
            best = current;
    }
    // If more people are asked for than the model hears, the groups stand as they are.
    return best.shares.size() > 0 ? best.shares : sharesOf(groupsOf(least), least);
}

// The shares of those only who speak.
MatrixXd ofSpeakers(const MatrixXd& shares) {
    std::vector<bool> speaks(static_cast<std::size_t>(shares.cols()), false);
    for (Index row = 0; row < shares.rows(); ++row) {
        Index likeliest = 0;
        shares.row(row).maxCoeff(&likeliest);
        speaks[static_cast<std::size_t>(likeliest)] = true;
    }
    std::vector<Index> columns;
    for (Index column = 0; column < shares.cols(); ++column)
        if (speaks[static_cast<std::size_t>(column)])
            columns.push_back(column);
    MatrixXd kept = shares(Eigen::all, columns);
    return kept.array().colwise() / kept.rowwise().sum().array();
}

struct Pair {
    Index first;
    Index second;
};

// The two most alike if they are one voice; or else who hardly speaks, and whose voice is nearest.
std::optional<Pair> twoOfOne(const WindowMatrix& vectors, const MatrixXd& shares) {
    const Index count = shares.cols();
    const Eigen::RowVectorXd sizes = shares.colwise().sum();
    const MatrixXd sums = shares.transpose() * vectors.cast<double>();
    MatrixXd voices(count, networkVectorSize + 1);
    for (Index speaker = 0; speaker < count; ++speaker)
        voices.row(speaker) = networkVoiceVector((sums.row(speaker) / sizes[speaker]).cast<float>());
    MatrixXd cosines = voices * voices.transpose();
    cosines.diagonal().setConstant(-2.0);
    Pair pair{0, 0};
    if (cosines.maxCoeff(&pair.first, &pair.second) >= oneVoice)
        return pair;
    if (sizes.minCoeff(&pair.first) >= fewestWindows)
        return std::nullopt;
    cosines.row(pair.first).maxCoeff(&pair.second);
    return pair;
}

// The more there is of a recording, the more certain is the smallest difference between two moods of one voice: what
// explains the windows best then has too many speakers. Two people differ by more than that, at any length.
MatrixXd withoutDoubles(const WindowMatrix& vectors, const WindowMatrix& windows, MatrixXd shares, int least) {
    shares = ofSpeakers(shares);
    while (shares.cols() > std::max(1, least)) {
        const auto pair = twoOfOne(vectors, shares);
        if (!pair)
            break;
        shares = joinedSpeakers(shares, std::min(pair->first, pair->second), std::max(pair->first, pair->second));
        const MatrixXd fitted = ofSpeakers(fitSequence(windows, voiceTable().ratios, shares).shares);
        if (fitted.cols() >= least)
            shares = fitted;
    }
    return shares;
}

} // namespace

Eigen::MatrixXf searchSpeakers(const WindowMatrix& vectors, const SpeakerLimits& limits) {
    const WindowMatrix windows = alongDirections(vectors);
    return withoutDoubles(vectors, windows, likeliestShares(windows, limits), limits.least).cast<float>();
}

} // namespace corvane
