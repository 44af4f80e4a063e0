#include "CorvaneWorker/Transcript/SegmentAssembly.h"

#include "CorvaneWorker/Transcript/Inaudible.h"

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

bool isOneOf(const QString& word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&word](const char* one) { return word == QLatin1String(one); });
}

bool asks(const QString& firstWord) {
    return isOneOf(firstWord, {"who", "what", "when", "where", "why", "which", "how", "is", "are", "do", "does", "did",
                               "can", "could", "would", "will", "shall", "have"});
}

// Words that begin a sentence or stand in it, and are no names.
bool isFunctionWord(const QString& word) {
    return isOneOf(word,
                   {"a",   "an", "the",  "and",   "or",   "but",  "of",   "to",   "in",   "on",      "at",    "for",
                    "by",  "as", "if",   "so",    "that", "this", "then", "than", "with", "from",    "it",    "he",
                    "she", "we", "they", "you",   "is",   "are",  "was",  "were", "be",   "because", "which", "who",
                    "not", "no", "when", "where", "what", "how",  "my",   "your", "our",  "their",   "his",   "her"});
}

QString capitalized(QString word) {
    word[0] = word[0].toUpper();
    return word;
}

QString textOfBareWords(Words words) {
    if (words.size() == 1 && words.front().text == QLatin1String(inaudible))
        return words.front().text;
    QStringList parts;
    for (const RecognizedWord& word : words) {
        const QString lower = word.text.toLower(); // some networks shout
        const bool pronoun = lower == QLatin1String("i") || lower.startsWith(QLatin1String("i'"));
        parts << (pronoun ? capitalized(lower) : lower);
    }
    const bool question = words.size() > 2 && asks(parts.first());
    parts.first() = capitalized(parts.first());
    return parts.join(QLatin1Char(' ')) + QLatin1Char(question ? '?' : '.');
}

QString textOfSentences(Words words) {
    QStringList parts;
    bool begins = true;
    for (const RecognizedWord& word : words) {
        const QString lower = word.text.toLower();
        parts << (begins ? capitalized(word.text) : isFunctionWord(lower) ? lower : word.text);
        begins = QStringLiteral(".?!").contains(word.text.back());
    }
    if (parts.last().endsWith(QLatin1Char(','))) // the network expected somebody to go on
        parts.last().back() = QLatin1Char('.');
    return parts.join(QLatin1Char(' '));
}

// Appends the words as one segment, or as several where they last too long.
void appendSegments(std::vector<TranscriptSegment>& segments, Words words, const QString& label, Spelling spelling) {
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
        appendSegments(segments, words.first(cut), label, spelling);
        appendSegments(segments, words.subspan(cut), label, spelling);
        return;
    }
    // Hundredths are as fine as the recogniser's frames are.
    const auto rounded = [](double seconds) { return std::round(seconds * 100.0) / 100.0; };
    const QString text = spelling == Spelling::Sentences ? textOfSentences(words) : textOfBareWords(words);
    segments.push_back({rounded(words.front().start), rounded(words.back().end), text, label});
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

std::vector<TranscriptSegment> assembleSegments(std::span<const RecognizedWord> words, Spelling spelling) {
    std::map<int, QString> labels;
    std::vector<TranscriptSegment> segments;
    for (std::size_t begin = 0, end = 0; begin < words.size(); begin = end) {
        end = begin + 1;
        while (end < words.size() && words[end].speaker == words[begin].speaker &&
               words[end].start - words[end - 1].end < pauseSeconds)
            ++end;
        const auto label =
            labels.try_emplace(words[begin].speaker, speakerLabel(static_cast<int>(labels.size()))).first;
        appendSegments(segments, words.subspan(begin, end - begin), label->second, spelling);
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
