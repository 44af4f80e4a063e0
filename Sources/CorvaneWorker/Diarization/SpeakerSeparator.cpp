#include "CorvaneWorker/Diarization/SpeakerSeparator.h"

#include "CorvaneWorker/Diarization/SpeakerSearch.h"
#include "CorvaneWorker/Diarization/TurnLabels.h"
#include "CorvaneWorker/Diarization/VoiceClustering.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"
#include "CorvaneWorker/Voice/VoiceModel.h"

#include <algorithm>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr double leastPersistence = 0.6; // of a voice that is one; see docs/decisions

// About the recording's own mean: what all of it has in common, its room and its microphones, tells nobody apart.
WindowMatrix centredUnitVectors(WindowMatrix vectors) {
    const Eigen::RowVectorXf centre = vectors.colwise().mean();
    vectors.rowwise() -= centre;
    vectors.rowwise().normalize();
    return vectors;
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

class NetworkSeparator : public SpeakerSeparator {
public:
    explicit NetworkSeparator(const VoiceModel& model) : m_model(model) {}

    QString name() const override { return QStringLiteral("corvane-voice-network"); }

    std::vector<SpeakerTurn> separate(const SampleStore& samples, std::span<const FrameRange> speech,
                                      const SpeakerLimits& limits,
                                      const std::function<void(double)>& progress) const override {
        const auto windows = placeWindows(speech, {.hop = 25, .shortest = 10});
        if (limits.most <= 1 || windows.size() < 2)
            return turnsOfOne(speech);
        const WindowMatrix vectors = m_model.measure(samples, speech, windows, progress);
        auto turns = labelSpeech(speech, windows, searchSpeakers(vectors, limits));
        moveBordersToPauses(turns, samples);
        return turns;
    }

private:
    const VoiceModel& m_model;
};

class PlainSeparator : public SpeakerSeparator {
public:
    QString name() const override { return QStringLiteral("corvane-acoustic-clustering"); }

    std::vector<SpeakerTurn> separate(const SampleStore& samples, std::span<const FrameRange> speech,
                                      const SpeakerLimits& limits,
                                      const std::function<void(double)>& progress) const override {
        if (limits.most <= 1)
            return turnsOfOne(speech);
        const VoiceWindows windows = measureWindows(samples, speech, progress);
        if (windows.ranges.size() < 2)
            return turnsOfOne(speech);
        const WindowMatrix vectors = projectWindows(windows.vectors);
        const WindowMatrix joined = centredUnitVectors(withNeighbours(vectors, windows.ranges));
        const WindowMatrix voices = findVoices(centredUnitVectors(vectors), joined, windows.ranges, limits);
        if (voices.rows() <= 1)
            return turnsOfOne(speech);
        return labelSpeech(speech, windows.ranges, joined * voices.transpose());
    }
};

class NoSeparator : public SpeakerSeparator {
public:
    QString name() const override { return QStringLiteral("off"); }

    std::vector<SpeakerTurn> separate(const SampleStore&, std::span<const FrameRange> speech, const SpeakerLimits&,
                                      const std::function<void(double)>&) const override {
        return turnsOfOne(speech);
    }
};

} // namespace

std::unique_ptr<SpeakerSeparator> networkSeparator(const VoiceModel& model) {
    return std::make_unique<NetworkSeparator>(model);
}

std::unique_ptr<SpeakerSeparator> plainSeparator() {
    return std::make_unique<PlainSeparator>();
}

std::unique_ptr<SpeakerSeparator> noSeparator() {
    return std::make_unique<NoSeparator>();
}

} // namespace corvane
