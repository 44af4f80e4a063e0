#include "CorvaneWorker/Transcript/SegmentAssembly.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace corvane {

namespace {

constexpr double pauseSeconds = 0.6;
constexpr double longestSegmentSeconds = 25.0;
constexpr std::size_t mostExamples = 5;
constexpr double shortestExampleSeconds = 2.0;
constexpr double longestExampleSeconds = 8.0;

using Words = std::span<const RecognizedWord>;

QString textOf(Words words) {
    QStringList parts;
    for (const RecognizedWord& word : words) {
        const bool pronoun = word.text == QLatin1String("i") || word.text.startsWith(QLatin1String("i'"));
        parts << (pronoun ? QLatin1Char('I') + word.text.mid(1) : word.text);
    }
    QString text = parts.join(QLatin1Char(' '));
    text[0] = text[0].toUpper();
    return text;
}

// Appends the words as one segment, or as several where they last too long.
void appendSegments(std::vector<TranscriptSegment>& segments, Words words, const QString& label) {
    if (words.size() > 1 && words.back().end - words.front().start > longestSegmentSeconds) {
        std::size_t cut = words.size() / 2;
        double widest = -1;
        // The middle half, so that no scrap is left over.
        for (std::size_t index = std::max<std::size_t>(1, words.size() / 4); index < words.size() * 3 / 4; ++index) {
            const double gap = words[index].start - words[index - 1].end;
            if (gap > widest) {
                widest = gap;
                cut = index;
            }
        }
        appendSegments(segments, words.first(cut), label);
        appendSegments(segments, words.subspan(cut), label);
        return;
    }
    // Hundredths are as fine as the recogniser's frames are.
    const auto rounded = [](double seconds) { return std::round(seconds * 100.0) / 100.0; };
    segments.push_back({rounded(words.front().start), rounded(words.back().end), textOf(words), label});
}

TranscriptExample exampleOf(const TranscriptSegment& segment) {
    return {segment.start, segment.end, segment.text};
}

// Up to five of the segments, evenly spread over them.
std::vector<TranscriptExample> spreadExamples(const std::vector<const TranscriptSegment*>& segments) {
    std::vector<TranscriptExample> examples;
    const std::size_t count = std::min(mostExamples, segments.size());
    for (std::size_t index = 0; index < count; ++index)
        examples.push_back(exampleOf(*segments[index * segments.size() / count]));
    return examples;
}

std::vector<TranscriptExample> chooseExamples(const std::vector<const TranscriptSegment*>& segments) {
    std::vector<const TranscriptSegment*> good;
    for (const TranscriptSegment* segment : segments) {
        const double seconds = segment->end - segment->start;
        if (seconds >= shortestExampleSeconds && seconds <= longestExampleSeconds)
            good.push_back(segment);
    }
    if (!good.empty())
        return spreadExamples(good);
    const auto nearest = std::min_element(segments.begin(), segments.end(), [](const auto* left, const auto* right) {
        const double wanted = (shortestExampleSeconds + longestExampleSeconds) / 2;
        return std::abs(left->end - left->start - wanted) < std::abs(right->end - right->start - wanted);
    });
    return {exampleOf(**nearest)};
}

} // namespace

QString speakerLabel(int number) {
    return QStringLiteral("SPEAKER_%1").arg(number, 2, 10, QLatin1Char('0'));
}

std::vector<TranscriptSegment> assembleSegments(std::span<const RecognizedWord> words) {
    std::map<int, QString> labels;
    std::vector<TranscriptSegment> segments;
    for (std::size_t begin = 0, end = 0; begin < words.size(); begin = end) {
        end = begin + 1;
        while (end < words.size() && words[end].speaker == words[begin].speaker &&
               words[end].start - words[end - 1].end < pauseSeconds)
            ++end;
        const auto label =
            labels.try_emplace(words[begin].speaker, speakerLabel(static_cast<int>(labels.size()))).first;
        appendSegments(segments, words.subspan(begin, end - begin), label->second);
    }
    return segments;
}

std::vector<TranscriptSpeaker> summarizeSpeakers(std::span<const TranscriptSegment> segments) {
    std::vector<TranscriptSpeaker> speakers;
    std::map<QString, std::vector<const TranscriptSegment*>> bySpeaker;
    for (const TranscriptSegment& segment : segments) {
        auto& own = bySpeaker[segment.speaker];
        if (own.empty())
            speakers.push_back({segment.speaker, 0.0, {}});
        own.push_back(&segment);
    }
    for (TranscriptSpeaker& speaker : speakers) {
        const auto& own = bySpeaker[speaker.speaker];
        for (const TranscriptSegment* segment : own)
            speaker.duration += segment->end - segment->start;
        speaker.duration = std::round(speaker.duration * 100.0) / 100.0;
        speaker.examples = chooseExamples(own);
    }
    return speakers;
}

} // namespace corvane
