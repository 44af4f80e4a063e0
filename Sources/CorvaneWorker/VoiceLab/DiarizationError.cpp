#include "CorvaneWorker/VoiceLab/DiarizationError.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace corvane {

namespace {

constexpr double stepSeconds = 0.01;
constexpr double collarSeconds = 0.25;
constexpr int nobody = -1;
constexpr int unscored = -2;

std::vector<int> labelsOf(std::span<const SpeakerTurn> turns, std::size_t steps) {
    std::vector<int> labels(steps, nobody);
    for (const SpeakerTurn& turn : turns)
        for (auto step = static_cast<std::size_t>(std::lround(turn.start / stepSeconds));
             step < std::min(steps, static_cast<std::size_t>(std::lround(turn.end / stepSeconds))); ++step)
            labels[step] = turn.speaker;
    return labels;
}

void leaveOutCollars(std::vector<int>& labels, std::span<const SpeakerTurn> truth) {
    for (const SpeakerTurn& turn : truth)
        for (const double edge : {turn.start, turn.end}) {
            const auto begin =
                static_cast<std::size_t>(std::max(0.0, std::round((edge - collarSeconds) / stepSeconds)));
            const auto end = static_cast<std::size_t>(std::round((edge + collarSeconds) / stepSeconds));
            for (std::size_t step = begin; step < std::min(end, labels.size()); ++step)
                labels[step] = unscored;
        }
}

// The largest total of matched seconds, trying every assignment; there are few speakers.
double bestMatch(const std::vector<std::vector<double>>& common, std::size_t row, std::vector<bool>& taken) {
    if (row == common.size())
        return 0.0;
    double best = bestMatch(common, row + 1, taken);
    for (std::size_t column = 0; column < taken.size(); ++column) {
        if (taken[column] || common[row][column] == 0.0)
            continue;
        taken[column] = true;
        best = std::max(best, common[row][column] + bestMatch(common, row + 1, taken));
        taken[column] = false;
    }
    return best;
}

} // namespace

DiarizationError compareTurns(std::span<const SpeakerTurn> truth, std::span<const SpeakerTurn> found) {
    double end = 0;
    int trueSpeakers = 0;
    int foundSpeakers = 0;
    for (const SpeakerTurn& turn : truth) {
        end = std::max(end, turn.end);
        trueSpeakers = std::max(trueSpeakers, turn.speaker + 1);
    }
    for (const SpeakerTurn& turn : found) {
        end = std::max(end, turn.end);
        foundSpeakers = std::max(foundSpeakers, turn.speaker + 1);
    }
    const auto steps = static_cast<std::size_t>(std::ceil((end + 1.0) / stepSeconds));
    auto wanted = labelsOf(truth, steps);
    leaveOutCollars(wanted, truth);
    const auto given = labelsOf(found, steps);
    std::vector common(static_cast<std::size_t>(trueSpeakers),
                       std::vector<double>(static_cast<std::size_t>(foundSpeakers), 0.0));
    DiarizationError error;
    double both = 0;
    for (std::size_t step = 0; step < steps; ++step) {
        if (wanted[step] == unscored)
            continue;
        if (wanted[step] >= 0)
            error.speech += stepSeconds;
        if (wanted[step] >= 0 && given[step] == nobody)
            error.missed += stepSeconds;
        if (wanted[step] == nobody && given[step] >= 0)
            error.falseAlarm += stepSeconds;
        if (wanted[step] >= 0 && given[step] >= 0) {
            both += stepSeconds;
            common[static_cast<std::size_t>(wanted[step])][static_cast<std::size_t>(given[step])] += stepSeconds;
        }
    }
    std::vector<bool> taken(static_cast<std::size_t>(foundSpeakers), false);
    error.confused = std::max(0.0, both - bestMatch(common, 0, taken));
    return error;
}

std::vector<SpeakerTurn> parseTruth(const QString& text) {
    std::vector<SpeakerTurn> turns;
    std::map<QString, int> numbers;
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() < 3)
            continue;
        const int number = numbers.try_emplace(fields[2], static_cast<int>(numbers.size())).first->second;
        turns.push_back({fields[0].toDouble(), fields[1].toDouble(), number});
    }
    return turns;
}

} // namespace corvane
