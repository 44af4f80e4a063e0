#include "CorvaneCore/Transcripts/SpeakerReview.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

namespace corvane {

namespace {

constexpr std::size_t mostExamplesPlayed = 5;
constexpr double shortestExcerptSeconds = 0.5;

std::int64_t wholeSeconds(double seconds) {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (seconds >= limit)
        return Limits::max();
    return seconds >= -limit ? std::llround(seconds) : Limits::min();
}

} // namespace

QString displayName(const QString& label, const SpeakerNames& names) {
    const auto name = names.find(label);
    const QString trimmed = name == names.end() ? QString() : name->second.trimmed();
    return trimmed.isEmpty() ? label : trimmed;
}

QString formatDuration(double seconds) {
    const std::int64_t whole = wholeSeconds(seconds);
    return UserText::tr("%1m %2s").arg(QString::number(whole / 60), QString::number(whole % 60));
}

std::optional<SpeakerProfileMatchSuggestion> suggestedProfileMatch(const QString& speaker,
                                                                   const SpeakerProfileMatches& matches) {
    std::optional<SpeakerProfileMatchSuggestion> best;
    for (const auto& match : matches) {
        if (match.speaker == speaker && match.status == suggestionStatus::suggested &&
            (!best || match.score > best->score))
            best = match;
    }
    return best;
}

std::optional<TranscriptSpeakerContext> speakerContext(const QString& speaker, const TranscriptResult& result) {
    if (!result.llm)
        return std::nullopt;
    const auto& contexts = result.llm->speakerContext;
    const auto found =
        std::find_if(contexts.begin(), contexts.end(), [&](const auto& context) { return context.speaker == speaker; });
    return found == contexts.end() ? std::nullopt : std::optional(*found);
}

QString normalizedSpeakerHintText(const QString& text) {
    return text.toLower().simplified();
}

std::vector<QString> deduplicatedNotableLines(const TranscriptSpeakerContext& context) {
    // With one blank between them, or none if one of the two is empty.
    const QString hint =
        (normalizedSpeakerHintText(context.shortLabel) + QLatin1Char(' ') + normalizedSpeakerHintText(context.context))
            .trimmed();
    std::set<QString> seen;
    std::vector<QString> lines;
    for (const QString& line : context.notableLines) {
        const QString normalized = normalizedSpeakerHintText(line);
        if (!normalized.isEmpty() && seen.insert(normalized).second && !hint.contains(normalized))
            lines.push_back(line);
    }
    return lines;
}

QString transcriptClipboardText(const std::vector<TranscriptDisplayGroup>& turns, const SpeakerNames& names) {
    QStringList lines;
    lines.reserve(static_cast<qsizetype>(turns.size()));
    for (const TranscriptDisplayGroup& group : turns)
        lines.append(QLatin1Char('[') + timestampText(group.start) + QStringLiteral("] ") +
                     displayName(group.speaker, names) + QStringLiteral(": ") + group.text);
    return lines.join(QLatin1Char('\n'));
}

std::vector<TranscriptExample> playableExamples(std::vector<TranscriptExample> examples) {
    std::erase_if(examples, [](const TranscriptExample& example) { return !(example.start < example.end); });
    std::stable_sort(examples.begin(), examples.end(),
                     [](const TranscriptExample& a, const TranscriptExample& b) { return a.start < b.start; });
    if (examples.size() > mostExamplesPlayed)
        examples.resize(mostExamplesPlayed);
    return examples;
}

double excerptWaitSeconds(double start, double end, double duration, double current) {
    return std::max(shortestExcerptSeconds, std::min(end - start, duration - current));
}

} // namespace corvane
