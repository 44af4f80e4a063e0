#include "CorvaneWorker/Diarization/Diarizer.h"

#include "CorvaneWorker/Diarization/VoiceClustering.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"
#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr Index mostClusteredWindows = 600; // the clustering costs the cube of this
constexpr double leastPersistence = 0.6;    // of a voice that is one; see docs/decisions
constexpr std::int64_t stepFrames = 10;     // labels are decided for this much at a time
constexpr double blurFrames = 45.0;         // of the Gaussian that spreads a window's vote around its middle
constexpr std::int64_t voteReach = 120;
constexpr std::int64_t shortestTurn = 40;

// About the recording's own mean: what all of it has in common, its room and its microphones, tells nobody apart.
WindowMatrix centredUnitVectors(WindowMatrix vectors) {
    const Eigen::RowVectorXf centre = vectors.colwise().mean();
    vectors.rowwise() -= centre;
    vectors.rowwise().normalize();
    return vectors;
}

WindowMatrix evenlyChosenRows(const WindowMatrix& vectors) {
    const Index count = std::min(vectors.rows(), mostClusteredWindows);
    WindowMatrix chosen(count, vectors.cols());
    for (Index row = 0; row < count; ++row)
        chosen.row(row) = vectors.row(row * vectors.rows() / count);
    return chosen;
}

// A window hears a handful of syllables; together with its neighbours in the same stretch it tells a voice much better.
WindowMatrix withNeighbours(const WindowMatrix& vectors, std::span<const FrameRange> windows) {
    constexpr float nearWeight = 0.7F; // one window away, and half of that two windows away
    WindowMatrix sums = vectors;
    Eigen::VectorXf weights = Eigen::VectorXf::Ones(vectors.rows());
    for (Index row = 0; row < vectors.rows(); ++row)
        for (Index other = row + 1; other <= std::min(row + 2, vectors.rows() - 1); ++other) {
            const auto index = static_cast<std::size_t>(other);
            if (windows[index].begin > windows[index - 1].end)
                break;
            const float weight = nearWeight / static_cast<float>(other - row);
            sums.row(row) += weight * vectors.row(other);
            sums.row(other) += weight * vectors.row(row);
            weights[row] += weight;
            weights[other] += weight;
        }
    return sums.array().colwise() / weights.array();
}

// The voices that the windows are best divided into: as many as the limits allow with every one of them going on for a
// while whenever it speaks. Rows are unit vectors.
WindowMatrix findVoices(const WindowMatrix& single, const WindowMatrix& joined, std::span<const FrameRange> windows,
                        const SpeakerLimits& limits) {
    const WindowMatrix chosen = evenlyChosenRows(joined);
    const auto levels = clusterByWard(chosen, limits.most);
    const int most = static_cast<int>(levels.size());
    const auto voicesOf = [&](int count) {
        return refinedDirections(joined, groupMeans(chosen, levels[static_cast<std::size_t>(count - 1)], count));
    };
    for (int count = most; count > std::min(limits.least, most); --count) {
        WindowMatrix voices = voicesOf(count);
        if (groupPersistence(windows, nearestDirections(single, voices), count) >= leastPersistence)
            return voices;
    }
    return voicesOf(std::min(limits.least, most));
}

void appendTurn(std::vector<SpeakerTurn>& turns, std::int64_t begin, std::int64_t end, int speaker) {
    const double start = static_cast<double>(begin) / framesPerSecond;
    const double stop = static_cast<double>(end) / framesPerSecond;
    if (!turns.empty() && turns.back().speaker == speaker && std::abs(turns.back().end - start) < 1e-9)
        turns.back().end = stop;
    else
        turns.push_back({start, stop, speaker});
}

// A scrap between two turns of the same stretch goes to the one before it, or else to the one behind it.
void absorbScraps(std::vector<SpeakerTurn>& turns) {
    const auto touches = [](const SpeakerTurn& left, const SpeakerTurn& right) {
        return std::abs(left.end - right.start) < 1e-9;
    };
    std::vector<SpeakerTurn> kept;
    for (std::size_t index = 0; index < turns.size(); ++index) {
        SpeakerTurn turn = turns[index];
        const bool scrap = turn.end - turn.start < static_cast<double>(shortestTurn) / framesPerSecond;
        if (scrap && !kept.empty() && touches(kept.back(), turn))
            turn.speaker = kept.back().speaker;
        else if (scrap && index + 1 < turns.size() && touches(turn, turns[index + 1]))
            turn.speaker = turns[index + 1].speaker;
        if (!kept.empty() && kept.back().speaker == turn.speaker && touches(kept.back(), turn))
            kept.back().end = turn.end;
        else
            kept.push_back(turn);
    }
    turns = std::move(kept);
}

// Every step of the speech is given to the speaker for whom the windows around it vote.
std::vector<SpeakerTurn> labelSpeech(std::span<const FrameRange> speech, const VoiceWindows& windows,
                                     const Eigen::MatrixXf& scores) {
    std::vector<SpeakerTurn> turns;
    const auto middleOf = [&](std::size_t window) {
        return (windows.ranges[window].begin + windows.ranges[window].end) / 2;
    };
    std::size_t first = 0;
    for (const FrameRange& range : speech) {
        for (std::int64_t begin = range.begin; begin < range.end; begin += stepFrames) {
            const std::int64_t end = std::min(range.end, begin + stepFrames);
            const std::int64_t middle = (begin + end) / 2;
            while (first + 1 < windows.ranges.size() && middleOf(first) < middle - voteReach)
                ++first;
            Eigen::RowVectorXf votes = Eigen::RowVectorXf::Zero(scores.cols());
            for (std::size_t window = first; window < windows.ranges.size(); ++window) {
                const auto distance = static_cast<double>(middleOf(window) - middle);
                if (distance > voteReach && window > first)
                    break;
                const double weight = std::exp(-0.5 * distance * distance / (blurFrames * blurFrames)) + 1e-9;
                votes += static_cast<float>(weight) * scores.row(static_cast<Index>(window));
            }
            Index speaker = 0;
            votes.maxCoeff(&speaker);
            appendTurn(turns, begin, end, static_cast<int>(speaker));
        }
    }
    absorbScraps(turns);
    return turns;
}

} // namespace

QString diarizationName() {
    return QStringLiteral("corvane-acoustic-clustering");
}

std::vector<SpeakerTurn> diarize(const SampleStore& samples, std::span<const FrameRange> speech,
                                 const SpeakerLimits& limits, const std::function<void(double)>& progress) {
    const auto everythingBy = [&](int speaker) {
        std::vector<SpeakerTurn> turns;
        for (const FrameRange& range : speech)
            appendTurn(turns, range.begin, range.end, speaker);
        return turns;
    };
    if (limits.most <= 1)
        return everythingBy(0);
    const VoiceWindows windows = measureWindows(samples, speech, progress);
    if (windows.ranges.size() < 2)
        return everythingBy(0);
    const WindowMatrix vectors = projectWindows(windows.vectors);
    const WindowMatrix joined = centredUnitVectors(withNeighbours(vectors, windows.ranges));
    const WindowMatrix voices = findVoices(centredUnitVectors(vectors), joined, windows.ranges, limits);
    if (voices.rows() <= 1)
        return everythingBy(0);
    return labelSpeech(speech, windows, joined * voices.transpose());
}

} // namespace corvane
