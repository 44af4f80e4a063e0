#include "CorvaneWorker/Transcript/Inaudible.h"

#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr double shortestTurn = 0.5;  // seconds
constexpr double shortestPart = 1.5;  // of a turn of which the rest was understood
constexpr double leastShare = 0.5;    // of the time in which speech was heard
constexpr double joinedPause = 0.6;   // seconds
constexpr double longestPassage = 20; // seconds

struct Stretch {
    double start = 0; // seconds
    double end = 0;
};

// Seconds of the stretch in which speech was heard. `next` goes along with the stretches.
double heardSeconds(const Stretch& stretch, std::span<const FrameRange> heard, std::size_t& next) {
    const auto seconds = [](std::int64_t frames) { return static_cast<double>(frames) / framesPerSecond; };
    while (next < heard.size() && seconds(heard[next].end) <= stretch.start)
        ++next;
    double common = 0;
    for (std::size_t index = next; index < heard.size() && seconds(heard[index].begin) < stretch.end; ++index)
        common +=
            std::min(stretch.end, seconds(heard[index].end)) - std::max(stretch.start, seconds(heard[index].begin));
    return common;
}

// What no word lies in, if it is long enough. `next` goes along with the turns.
std::vector<Stretch> wordlessParts(const SpeakerTurn& turn, std::span<const RecognizedWord> words, std::size_t& next) {
    while (next < words.size() && words[next].end <= turn.start)
        ++next;
    if (next == words.size() || words[next].start >= turn.end)
        return turn.end - turn.start < shortestTurn ? std::vector<Stretch>{}
                                                    : std::vector{Stretch{turn.start, turn.end}};
    std::vector<Stretch> parts;
    double end = turn.start;
    const auto close = [&](double start) {
        if (start - end >= shortestPart)
            parts.push_back({end, start});
    };
    for (std::size_t index = next; index < words.size() && words[index].start < turn.end; ++index) {
        close(words[index].start);
        end = std::max(end, words[index].end);
    }
    close(turn.end);
    return parts;
}

} // namespace

std::vector<RecognizedWord> withInaudible(std::vector<RecognizedWord> words, std::span<const SpeakerTurn> turns,
                                          std::span<const FrameRange> heard) {
    std::vector<RecognizedWord> passages;
    std::size_t word = 0;
    std::size_t range = 0;
    for (const SpeakerTurn& turn : turns)
        for (const Stretch& part : wordlessParts(turn, words, word)) {
            if (heardSeconds(part, heard, range) < leastShare * (part.end - part.start))
                continue;
            if (!passages.empty() && passages.back().speaker == turn.speaker &&
                part.start - passages.back().end < joinedPause && part.end - passages.back().start < longestPassage)
                passages.back().end = part.end;
            else
                passages.push_back({part.start, part.end, QLatin1String(inaudible), turn.speaker});
        }
    const auto middle = static_cast<std::ptrdiff_t>(words.size());
    words.insert(words.end(), passages.begin(), passages.end());
    std::inplace_merge(
        words.begin(), words.begin() + middle, words.end(),
        [](const RecognizedWord& left, const RecognizedWord& right) { return left.start < right.start; });
    return words;
}

} // namespace corvane
