#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QtGlobal>

#include <array>
#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace corvane {

namespace {

struct ClockTime {
    std::int64_t hours, minutes, seconds, milliseconds;
};

ClockTime clockTime(double seconds) {
    const double rounded = std::round(seconds * 1000.0);
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!(rounded >= -limit && rounded < limit))
        qFatal("a transcript time of %g seconds cannot be printed", seconds);
    std::int64_t rest = static_cast<std::int64_t>(rounded);
    ClockTime time{};
    time.hours = rest / 3600000;
    rest %= 3600000;
    time.minutes = rest / 60000;
    rest %= 60000;
    time.seconds = rest / 1000;
    time.milliseconds = rest % 1000;
    return time;
}

QString displayName(const QString& label, const SpeakerNames& names) {
    const auto name = names.find(label);
    return name == names.end() || name->second.trimmed().isEmpty() ? label : name->second;
}

QString clockText(const ClockTime& time) {
    std::array<char, 96> text{};
    const int length = std::snprintf(text.data(), text.size(), "%02" PRId64 ":%02" PRId64 ":%02" PRId64, time.hours,
                                     time.minutes, time.seconds);
    return QString::fromLatin1(text.data(), length);
}

QString timestamp(double seconds, char separator) {
    const ClockTime time = clockTime(seconds);
    std::array<char, 32> fraction{};
    const int length = std::snprintf(fraction.data(), fraction.size(), "%c%03" PRId64, separator, time.milliseconds);
    return clockText(time) + QLatin1String(fraction.data(), length);
}

void appendSpoken(QString& text, const TranscriptSegmentGroup& turn, const SpeakerNames& names) {
    text.append(displayName(turn.speaker, names)).append(QLatin1String(": ")).append(turn.text);
}

// Joins what `append(text, index, turn)` adds for each turn, and ends with a line feed if there is any segment at all.
template<typename Append>
QString joinTurns(const std::vector<TranscriptSegment>& segments, QLatin1String separator, Append append) {
    const auto turns = groupedSegments(segments);
    QString text;
    for (std::size_t i = 0; i < turns.size(); ++i) {
        if (i > 0)
            text.append(separator);
        append(text, i, turns[i]);
    }
    if (!segments.empty())
        text.append(QLatin1Char('\n'));
    return text;
}

} // namespace

std::vector<TranscriptSegmentGroup> groupedSegments(const std::vector<TranscriptSegment>& segments) {
    std::vector<TranscriptSegmentGroup> groups;
    for (const auto& segment : segments) {
        const QString text = segment.text.trimmed();
        if (text.isEmpty())
            continue;
        if (!groups.empty() && groups.back().speaker == segment.speaker) {
            groups.back().end = segment.end;
            groups.back().text += QLatin1Char(' ') + text;
        } else {
            groups.push_back({segment.start, segment.end, segment.speaker, text});
        }
    }
    return groups;
}

QString timestampSRT(double seconds) {
    return timestamp(seconds, ',');
}

QString timestampPlain(double seconds) {
    return clockText(clockTime(seconds));
}

QString transcriptText(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns(segments, QLatin1String("\n"),
                     [&](QString& text, std::size_t, const TranscriptSegmentGroup& turn) {
                         text.append(QLatin1Char('[')).append(timestamp(turn.start, '.')).append(QLatin1String("] "));
                         appendSpoken(text, turn, names);
                     });
}

QString transcriptSRT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns(segments, QLatin1String("\n\n"),
                     [&](QString& text, std::size_t index, const TranscriptSegmentGroup& turn) {
                         text.append(QString::number(index + 1)).append(QLatin1Char('\n'));
                         text.append(timestampSRT(turn.start)).append(QLatin1String(" --> "));
                         text.append(timestampSRT(turn.end)).append(QLatin1Char('\n'));
                         appendSpoken(text, turn, names);
                     });
}

QString transcriptVTT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return QStringLiteral("WEBVTT\n\n") +
           joinTurns(segments, QLatin1String("\n\n"),
                     [&](QString& text, std::size_t, const TranscriptSegmentGroup& turn) {
                         text.append(timestamp(turn.start, '.')).append(QLatin1String(" --> "));
                         text.append(timestamp(turn.end, '.')).append(QLatin1Char('\n'));
                         appendSpoken(text, turn, names);
                     });
}

} // namespace corvane
