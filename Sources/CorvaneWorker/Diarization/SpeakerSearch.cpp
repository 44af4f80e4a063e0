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
MatrixXd likeliestShares(const WindowMatrix& windows, const VoiceSequence& sequence, const SpeakerLimits& limits) {
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
    SequenceFit current = fitSequence(sequence, sharesOf(groupsOf(top), top));
    for (int count = top; count >= least; --count) {
        if (count < top) {
            current = fitSequence(sequence, withOneSpeakerLess(sequence, current.shares));
            SequenceFit fresh = fitSequence(sequence, sharesOf(groupsOf(count), count));
            if (fresh.score > current.score)
                current = std::move(fresh);
        }
        const int heard = static_cast<int>(likeliestSpeakers(current.shares).size());
        if (heard >= least && heard <= limits.most && (best.shares.size() == 0 || current.score > best.score))
            best = current;
    }
    // If more people are asked for than the model hears, the groups stand as they are.
    return best.shares.size() > 0 ? best.shares : sharesOf(groupsOf(least), least);
}

// The shares of those only who speak.
MatrixXd ofSpeakers(const MatrixXd& shares) {
    const MatrixXd kept = shares(Eigen::all, likeliestSpeakers(shares));
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
    const Eigen::MatrixXf sums = shares.transpose().cast<float>() * vectors;
    MatrixXd voices(count, networkVectorSize + 1);
    for (Index speaker = 0; speaker < count; ++speaker)
        voices.row(speaker) = networkVoiceVector(sums.row(speaker) / static_cast<float>(sizes[speaker]));
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
MatrixXd withoutDoubles(const WindowMatrix& vectors, const VoiceSequence& sequence, MatrixXd shares, int least) {
    shares = ofSpeakers(shares);
    while (shares.cols() > std::max(1, least)) {
        const auto pair = twoOfOne(vectors, shares);
        if (!pair)
            break;
        shares = joinedSpeakers(shares, std::min(pair->first, pair->second), std::max(pair->first, pair->second));
        const MatrixXd fitted = ofSpeakers(fitSequence(sequence, shares).shares);
        if (fitted.cols() >= least)
            shares = fitted;
    }
    return shares;
}

} // namespace

Eigen::MatrixXf searchSpeakers(const WindowMatrix& vectors, const SpeakerLimits& limits) {
    const WindowMatrix windows = alongDirections(vectors);
    const VoiceSequence sequence(windows, voiceTable().ratios);
    return withoutDoubles(vectors, sequence, likeliestShares(windows, sequence, limits), limits.least).cast<float>();
}

} // namespace corvane
