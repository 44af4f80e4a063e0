#include "CorvaneWorker/Diarization/TurnLabels.h"

#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr std::int64_t stepFrames = 10; // labels are decided for this much at a time
constexpr double blurFrames = 45.0;     // of the Gaussian that spreads a window's vote around its middle
constexpr std::int64_t voteReach = 120;
constexpr std::int64_t shortestTurn = 40;
constexpr std::int64_t borderReach = 40; // frames by which a border may move
constexpr double farther = 0.15;         // dB that a place must be quieter for each frame that it is away

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

// The frame, counted from the first of the samples, around which a twentieth of a second is quietest.
std::int64_t quietestFrame(std::span<const std::int16_t> samples, std::int64_t wanted) {
    FrameLevels levels;
    levels.add(samples);
    const auto& level = levels.levels();
    std::int64_t best = wanted;
    double least = std::numeric_limits<double>::max();
    for (std::size_t frame = 2; frame + 2 < level.size(); ++frame) {
        const double around =
            (level[frame - 2] + level[frame - 1] + level[frame] + level[frame + 1] + level[frame + 2]) / 5.0;
        const auto place = static_cast<std::int64_t>(frame);
        const double cost = around + farther * static_cast<double>(std::abs(place - wanted));
        if (cost < least) {
            least = cost;
            best = place;
        }
    }
    return best;
}

} // namespace

std::vector<SpeakerTurn> labelSpeech(std::span<const FrameRange> speech, std::span<const FrameRange> windows,
                                     const Eigen::MatrixXf& scores) {
    std::vector<SpeakerTurn> turns;
    const auto middleOf = [&](std::size_t window) { return (windows[window].begin + windows[window].end) / 2; };
    std::size_t first = 0;
    for (const FrameRange& range : speech) {
        for (std::int64_t begin = range.begin; begin < range.end; begin += stepFrames) {
            const std::int64_t end = std::min(range.end, begin + stepFrames);
            const std::int64_t middle = (begin + end) / 2;
            while (first + 1 < windows.size() && middleOf(first) < middle - voteReach)
                ++first;
            Eigen::RowVectorXf votes = Eigen::RowVectorXf::Zero(scores.cols());
            for (std::size_t window = first; window < windows.size(); ++window) {
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

std::vector<SpeakerTurn> turnsOfOne(std::span<const FrameRange> speech) {
    std::vector<SpeakerTurn> turns;
    for (const FrameRange& range : speech)
        appendTurn(turns, range.begin, range.end, 0);
    return turns;
}

void moveBordersToPauses(std::vector<SpeakerTurn>& turns, const SampleStore& samples) {
    for (std::size_t index = 1; index < turns.size(); ++index) {
        SpeakerTurn& left = turns[index - 1];
        SpeakerTurn& right = turns[index];
        if (std::abs(left.end - right.start) > 1e-9)
            continue;
        const auto border = std::llround(left.end * framesPerSecond);
        // At least half of each turn stays.
        const auto first = std::max(border - borderReach, std::llround((left.start + left.end) / 2 * framesPerSecond));
        const auto last = std::min(border + borderReach, std::llround((right.start + right.end) / 2 * framesPerSecond));
        const auto sound = samples.read(first * frameSamples, (last - first) * frameSamples);
        const auto moved = static_cast<double>(first + quietestFrame(sound, border - first)) / framesPerSecond;
        left.end = moved;
        right.start = moved;
    }
}

} // namespace corvane
