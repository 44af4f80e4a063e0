#include "CorvaneWorker/Diarization/VoiceWindows.h"

#include "CorvaneWorker/Diarization/VoiceBackground.h"
#include "CorvaneWorker/Diarization/VoiceFeatures.h"
#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace corvane {

namespace {

constexpr std::int64_t windowFrames = 150;
constexpr Eigen::Index fewestClearFrames = 30;
constexpr float clearBelowLoudest = 25.0F; // dB; quieter frames are breath and reverberation
constexpr int deltaReach = 2;              // frames to either side
constexpr std::int64_t blockFrames = 3000; // measured at a time, so that memory stays bounded

using Rows = std::vector<Eigen::Index>;

Rows clearFrames(const VoiceFrames& frames, Eigen::Index begin, Eigen::Index end) {
    Rows rows;
    const float loudest = frames.level.segment(begin, end - begin).maxCoeff();
    for (Eigen::Index row = begin; row < end; ++row)
        if (frames.level[row] > loudest - clearBelowLoudest)
            rows.push_back(row);
    return rows;
}

// The slope over five frames, by regression.
Eigen::RowVectorXf deltaAt(const VoiceFrames& frames, Eigen::Index row) {
    Eigen::RowVectorXf delta = Eigen::RowVectorXf::Zero(cepstrumSize);
    const Eigen::Index last = frames.cepstra.rows() - 1;
    for (int reach = 1; reach <= deltaReach; ++reach)
        delta += static_cast<float>(reach) * (frames.cepstra.row(std::min(last, row + reach)) -
                                              frames.cepstra.row(std::max<Eigen::Index>(0, row - reach)));
    return delta / 10.0F;
}

struct Moments {
    Eigen::RowVectorXf sum = Eigen::RowVectorXf::Zero(cepstrumSize);
    Eigen::RowVectorXf squares = Eigen::RowVectorXf::Zero(cepstrumSize);
    float count = 0;

    void add(const Eigen::RowVectorXf& value) {
        sum += value;
        squares += value.cwiseProduct(value);
        count += 1.0F;
    }
    [[nodiscard]] Eigen::RowVectorXf mean() const { return sum / count; }
    [[nodiscard]] Eigen::RowVectorXf logDeviation() const {
        return ((squares / count - mean().cwiseProduct(mean())).array().max(1e-4F).log() / 2.0F).matrix();
    }
};

// The middle and the spread of the pitch, robust against octave errors. A window without pitch gets that of nobody.
Eigen::RowVector2f pitchOf(const VoiceFrames& frames, const Rows& rows) {
    std::vector<float> pitches;
    for (const Eigen::Index row : rows)
        if (frames.logPitch[row] > 0.0F)
            pitches.push_back(frames.logPitch[row]);
    if (pitches.size() < 10)
        return {unknownLogPitch, unknownLogPitchSpread};
    std::sort(pitches.begin(), pitches.end());
    const std::size_t count = pitches.size();
    return {pitches[count / 2], std::min(0.5F, pitches[count * 3 / 4] - pitches[count / 4])};
}

std::optional<Eigen::RowVectorXf> statistics(const VoiceFrames& frames, Eigen::Index begin, Eigen::Index end) {
    if (end > frames.cepstra.rows() || end <= begin)
        return std::nullopt;
    const Rows rows = clearFrames(frames, begin, end);
    if (static_cast<Eigen::Index>(rows.size()) < fewestClearFrames)
        return std::nullopt;
    Moments cepstra;
    Moments deltas;
    for (const Eigen::Index row : rows) {
        cepstra.add(frames.cepstra.row(row));
        deltas.add(deltaAt(frames, row));
    }
    Eigen::RowVectorXf result(voiceStatisticsSize);
    // The mean of c0 is how loud somebody speaks, and not who.
    result << cepstra.mean().tail(cepstrumSize - 1), cepstra.logDeviation(), deltas.logDeviation(),
        pitchOf(frames, rows);
    return result;
}

} // namespace

std::vector<FrameRange> placeWindows(std::span<const FrameRange> speech, const WindowPlan& plan) {
    std::vector<FrameRange> windows;
    for (const FrameRange& range : speech) {
        if (range.length() < plan.shortest)
            continue;
        std::int64_t begin = range.begin;
        for (; begin + windowFrames < range.end; begin += plan.hop)
            windows.push_back({begin, begin + windowFrames});
        const std::int64_t last = std::max(range.begin, range.end - windowFrames);
        windows.push_back({last, range.end});
    }
    return windows;
}

VoiceWindows measureWindows(const SampleStore& samples, std::span<const FrameRange> speech,
                            const std::function<void(double)>& progress) {
    const auto windows = placeWindows(speech);
    VoiceFeatures features;
    std::vector<Eigen::RowVectorXf> rows;
    VoiceWindows result;
    for (std::size_t first = 0, last = 0; first < windows.size(); first = last) {
        const std::int64_t begin = windows[first].begin;
        while (last < windows.size() && (last == first || windows[last].end - begin <= blockFrames))
            ++last;
        const std::int64_t length = windows[last - 1].end - begin;
        const auto frames = features.compute(samples.read(begin * frameSamples, length * frameSamples));
        for (std::size_t index = first; index < last; ++index) {
            const auto row = statistics(frames, windows[index].begin - begin, windows[index].end - begin);
            if (!row)
                continue;
            rows.push_back(*row);
            result.ranges.push_back(windows[index]);
        }
        progress(static_cast<double>(last) / static_cast<double>(windows.size()));
    }
    result.vectors.resize(static_cast<Eigen::Index>(rows.size()), voiceStatisticsSize);
    for (std::size_t index = 0; index < rows.size(); ++index)
        result.vectors.row(static_cast<Eigen::Index>(index)) = rows[index];
    return result;
}

WindowMatrix projectWindows(const WindowMatrix& statistics) {
    const VoiceBackground& background = voiceBackground();
    const Eigen::ArrayXf ratios = background.ratios.transpose().array();
    const Eigen::VectorXf weights = (ratios / (1.0F + ratios)).sqrt().matrix();
    return (statistics.rowwise() - background.mean) * background.projection * weights.asDiagonal();
}

Eigen::RowVectorXd voiceVector(const WindowMatrix& statistics) {
    // What is left of the variance within a voice in the mean of the windows of some ten seconds.
    constexpr float residue = 0.3F;
    const VoiceBackground& background = voiceBackground();
    const Eigen::RowVectorXf mean = statistics.colwise().mean() - background.mean;
    // Wiener's factor, then equal spread over the voices.
    const Eigen::ArrayXf ratios = background.ratios.transpose().array();
    const Eigen::VectorXf weights = (ratios / (ratios + residue) / (ratios + residue).sqrt()).matrix();
    const Eigen::RowVectorXf vector = mean * background.projection * weights.asDiagonal();
    return vector.cast<double>().normalized();
}

} // namespace corvane
