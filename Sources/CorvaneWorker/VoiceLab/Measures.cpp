#include "CorvaneWorker/VoiceLab/Measures.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Run/StageChoice.h"
#include "CorvaneWorker/Voice/VoiceTable.h"
#include "CorvaneWorker/VoiceLab/DiarizationError.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <set>

namespace corvane {

namespace {

constexpr double matchThreshold = 0.82; // the application's
const QString clean = QStringLiteral("clean");

struct Total {
    DiarizationError error;
    int recordings = 0;
    int rightNumbers = 0;

    void add(const DiarizationError& other, bool isRightNumber) {
        error.speech += other.speech;
        error.missed += other.missed;
        error.falseAlarm += other.falseAlarm;
        error.confused += other.confused;
        ++recordings;
        rightNumbers += isRightNumber ? 1 : 0;
    }

    void print(const QString& name) const {
        std::printf("%-24s error %5.2f%%: confused %5.2f%% missed %5.2f%% false %5.2f%%; number right %d of %d\n",
                    qPrintable(name), error.rate() * 100, error.confused / error.speech * 100,
                    error.missed / error.speech * 100, error.falseAlarm / error.speech * 100, rightNumbers, recordings);
    }
};

std::size_t speakersIn(const std::vector<SpeakerTurn>& turns) {
    std::set<int> speakers;
    for (const SpeakerTurn& turn : turns)
        speakers.insert(turn.speaker);
    return speakers.size();
}

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct Voice {
    QString person;
    QString room;
    QString meeting;
    Eigen::RowVectorXd vector;
};

// How often one is taken for two, and two for one.
struct Errors {
    std::vector<double> same;
    std::vector<double> different;

    void add(const Voice& left, const Voice& right) {
        (left.person == right.person ? same : different).push_back(left.vector.dot(right.vector));
    }

    void sort() {
        std::sort(same.begin(), same.end());
        std::sort(different.begin(), different.end());
    }

    [[nodiscard]] double missed(double threshold) const {
        return static_cast<double>(std::lower_bound(same.begin(), same.end(), threshold) - same.begin()) /
               static_cast<double>(std::max<std::size_t>(1, same.size()));
    }

    [[nodiscard]] double confused(double threshold) const {
        return static_cast<double>(different.end() - std::lower_bound(different.begin(), different.end(), threshold)) /
               static_cast<double>(std::max<std::size_t>(1, different.size()));
    }

    // Where both are equal, and the cosine there.
    [[nodiscard]] std::pair<double, double> equalRate() const {
        std::pair<double, double> best{1.0, 0.0};
        for (const double threshold : same)
            best = std::min(best, {std::max(missed(threshold), confused(threshold)), threshold});
        return best;
    }

    void print(const QString& name) const {
        const auto at = [](const std::vector<double>& sorted, double part) {
            return sorted.empty() ? 0.0
                                  : sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
        };
        std::printf("%-24s missed %5.2f%% of %zu, taken for one %5.2f%% of %zu; one voice 1%% %.3f median %.3f, "
                    "two voices 99%% %.3f highest %.3f\n",
                    qPrintable(name), missed(matchThreshold) * 100, same.size(), confused(matchThreshold) * 100,
                    different.size(), at(same, 0.01), at(same, 0.5), at(different, 0.99), at(different, 1.0));
    }
};

using Pieces = std::vector<std::pair<Voice, FrameMatrix>>;

void printShortStretches(const Pieces& pieces) {
    constexpr double hopSeconds = 0.75;
    for (const double seconds : {3.0, 5.0, 10.0}) {
        const auto size = static_cast<Eigen::Index>(seconds / hopSeconds);
        std::vector<Voice> voices;
        for (const auto& [voice, windows] : pieces)
            for (Eigen::Index first = 0; voice.room == clean && first + size <= windows.rows(); first += size)
                voices.push_back({voice.person, clean, voice.meeting,
                                  networkVoiceVector(windows.middleRows(first, size).colwise().mean())});
        Errors errors;
        for (std::size_t left = 0; left < voices.size(); ++left)
            for (std::size_t right = left + 1; right < voices.size(); ++right)
                errors.add(voices[left], voices[right]);
        errors.sort();
        const auto [rate, cosine] = errors.equalRate();
        std::printf("%4.0f s of speech          equal error rate %.2f%% at %.3f\n", seconds, rate * 100, cosine);
    }
}

} // namespace

void printDiarizationErrors(const QString& directory) {
    std::map<QString, Total> totals;
    double seconds = 0;
    double processor = 0;
    double wall = 0;
    const auto separator = chooseSeparator();
    const QDir folder(directory);
    for (const QString& name : folder.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name)) {
        const QString base = name.chopped(4);
        const auto text = readTextFile(folder.filePath(base + QStringLiteral(".tsv")));
        if (!text)
            throw WorkerError(QStringLiteral("%1 has no truth.").arg(name));
        const auto truth = parseTruth(*text);
        const auto count = static_cast<int>(speakersIn(truth));
        const Recording recording(folder.filePath(name));
        seconds += secondsOfSamples(recording.samples.sampleCount());
        for (const SpeakerLimits& limits : {SpeakerLimits{count, count}, SpeakerLimits{}}) {
            const QString mode = limits.least == limits.most ? QStringLiteral("told ") : QStringLiteral("untold ");
            const double before = processorSeconds();
            const auto start = std::chrono::steady_clock::now();
            const auto found = separator->separate(recording.samples, recording.speech, limits, [](double) {});
            if (limits == SpeakerLimits{}) {
                processor += processorSeconds() - before;
                wall += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            }
            const DiarizationError error = compareTurns(truth, found);
            const bool isRight = static_cast<int>(speakersIn(found)) == count;
            totals[mode + QStringLiteral("in all")].add(error, isRight);
            totals[mode + base.section(QLatin1Char('-'), 2)].add(error, isRight);
            totals[mode + base.section(QLatin1Char('-'), 1, 1) + QStringLiteral(" speakers")].add(error, isRight);
            std::printf("  %-22s %-6s error %5.1f%% confused %5.1f%%, %zu of %d speakers\n", qPrintable(base),
                        qPrintable(mode), error.rate() * 100, error.confused / error.speech * 100, speakersIn(found),
                        count);
        }
    }
    for (const auto& [name, total] : totals)
        total.print(name);
    std::printf("%.0f s of sound; number untold: %.4f of that in processor time, %.4f on the clock\n", seconds,
                processor / seconds, wall / seconds);
}

void printVoiceErrors(const QString& directory) {
    Pieces pieces;
    for (const CorpusFile& file : corpusFiles(directory)) {
        if (file.speaker.contains(QLatin1Char('^')))
            continue;
        const QString base = file.path.section(QLatin1Char('/'), -1).chopped(4);
        const FrameMatrix windows = networkWindowsOfFile(file.path, voiceWindows);
        if (windows.rows() > 0)
            pieces.push_back({{file.speaker.section(QLatin1Char('@'), 0, 0), base.section(QLatin1Char('-'), 1),
                               base.section(QLatin1Char('-'), 0, 0), networkVoiceVector(windows.colwise().mean())},
                              windows});
    }
    printShortStretches(pieces);
    std::map<QString, Errors> table;
    for (std::size_t left = 0; left < pieces.size(); ++left)
        for (std::size_t right = left + 1; right < pieces.size(); ++right) {
            const Voice& one = pieces[left].first;
            const Voice& other = pieces[right].first;
            if (one.room == other.room) {
                table[one.room == clean ? QStringLiteral("both clean") : QStringLiteral("one room")].add(one, other);
                continue;
            }
            if (one.person == other.person && one.meeting == other.meeting)
                continue; // the same words
            table[QStringLiteral("across rooms")].add(one, other);
            if (one.room == clean || other.room == clean)
                table[QStringLiteral("clean against ") + (one.room == clean ? other.room : one.room)].add(one, other);
        }
    for (auto& [name, errors] : table) {
        errors.sort();
        errors.print(name);
    }
}

} // namespace corvane
