#include "CorvaneWorker/VoiceLab/Measures.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Diarization/Diarizer.h"
#include "CorvaneWorker/VoiceLab/DiarizationError.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"
#include "CorvaneWorker/WorkerError.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace corvane {

namespace {

constexpr double hopSeconds = 0.75;
constexpr std::size_t mostVoices = 40;  // of one speaker
constexpr double matchThreshold = 0.82; // the application's

struct Voice {
    QString speaker;
    Eigen::RowVectorXd vector;
};

double at(const std::vector<double>& sorted, double fraction) {
    return sorted.empty() ? 0.0 : sorted[static_cast<std::size_t>(fraction * static_cast<double>(sorted.size() - 1))];
}

void printDistribution(const char* name, const std::vector<double>& sorted) {
    std::printf("%s %zu pairs: 1%% %.3f 5%% %.3f median %.3f 95%% %.3f 99%% %.3f; at or over %.2f: %.1f%%\n", name,
                sorted.size(), at(sorted, 0.01), at(sorted, 0.05), at(sorted, 0.5), at(sorted, 0.95), at(sorted, 0.99),
                matchThreshold,
                100.0 *
                    static_cast<double>(sorted.end() - std::lower_bound(sorted.begin(), sorted.end(), matchThreshold)) /
                    static_cast<double>(std::max<std::size_t>(1, sorted.size())));
}

} // namespace

void printVoiceCosines(const QString& corpus, double seconds) {
    std::map<QString, std::vector<Eigen::RowVectorXf>> windows;
    for (const CorpusFile& file : corpusFiles(corpus)) {
        const WindowMatrix statistics = statisticsOfFile(file.path);
        for (Eigen::Index row = 0; row < statistics.rows(); ++row)
            windows[file.speaker].push_back(statistics.row(row));
    }
    std::vector<Voice> voices;
    const auto size = static_cast<std::size_t>(std::max(1.0, seconds / hopSeconds));
    for (const auto& [speaker, rows] : windows)
        for (std::size_t first = 0; first + size <= rows.size() && first < mostVoices * size; first += size) {
            WindowMatrix own(static_cast<Eigen::Index>(size), rows.front().size());
            for (std::size_t row = 0; row < size; ++row)
                own.row(static_cast<Eigen::Index>(row)) = rows[first + row];
            voices.push_back({speaker, voiceVector(own)});
        }
    std::vector<double> same;
    std::vector<double> different;
    std::map<std::pair<QString, QString>, std::vector<double>> table;
    for (std::size_t left = 0; left < voices.size(); ++left)
        for (std::size_t right = left + 1; right < voices.size(); ++right) {
            const double cosine = voices[left].vector.dot(voices[right].vector);
            (voices[left].speaker == voices[right].speaker ? same : different).push_back(cosine);
            table[{voices[left].speaker, voices[right].speaker}].push_back(cosine);
        }
    std::sort(same.begin(), same.end());
    std::sort(different.begin(), different.end());
    printDistribution("same", same);
    printDistribution("different", different);
    double rate = 1.0;
    for (const double threshold : same) {
        const double missed =
            static_cast<double>(std::lower_bound(same.begin(), same.end(), threshold) - same.begin()) /
            static_cast<double>(same.size());
        const double passed =
            static_cast<double>(different.end() - std::lower_bound(different.begin(), different.end(), threshold)) /
            static_cast<double>(std::max<std::size_t>(1, different.size()));
        rate = std::min(rate, std::max(missed, passed));
    }
    std::printf("equal error rate %.1f%%\n", rate * 100.0);
    for (auto& [pair, values] : table) {
        std::sort(values.begin(), values.end());
        std::printf("  %s / %s: median %.3f, 5%% %.3f, 95%% %.3f\n", qPrintable(pair.first), qPrintable(pair.second),
                    at(values, 0.5), at(values, 0.05), at(values, 0.95));
    }
}

void printDiarizationError(const QString& audio, const QString& truth) {
    const auto text = readTextFile(truth);
    if (!text)
        throw WorkerError(QStringLiteral("%1 cannot be read.").arg(truth));
    const auto turns = parseTruth(*text);
    std::set<int> speakers;
    for (const SpeakerTurn& turn : turns)
        speakers.insert(turn.speaker);
    const Recording recording(audio);
    const int count = static_cast<int>(speakers.size());
    for (const SpeakerLimits& limits : {SpeakerLimits{count, count}, SpeakerLimits{}}) {
        const auto found = diarize(recording.samples, recording.speech, limits, [](double) {});
        std::set<int> foundSpeakers;
        for (const SpeakerTurn& turn : found)
            foundSpeakers.insert(turn.speaker);
        const DiarizationError error = compareTurns(turns, found);
        std::printf("%s\t%s\ttrue %d found %zu\tDER %.1f%%\tconfusion %.1f%% missed %.1f%% false %.1f%%\n",
                    qPrintable(audio.section(QLatin1Char('/'), -1)), limits.least == limits.most ? "known" : "auto",
                    count, foundSpeakers.size(), error.rate() * 100, error.confused / error.speech * 100,
                    error.missed / error.speech * 100, error.falseAlarm / error.speech * 100);
    }
}

} // namespace corvane
