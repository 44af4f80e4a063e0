#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QtGlobal>

#include <cmath>
#include <cstdint>

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

QString withFullStop(QString timestamp) {
    return timestamp.replace(QLatin1Char(','), QLatin1Char('.'));
}

QString spoken(const TranscriptSegmentGroup& turn, const SpeakerNames& names) {
    return displayName(turn.speaker, names) + QStringLiteral(": ") + turn.text;
}

// Joins what `format(index, turn)` gives, and ends with a line feed if there is any segment at all.
template<typename Format>
QString joinTurns(const std::vector<TranscriptSegment>& segments, const QString& separator, Format format) {
    QStringList parts;
    const auto turns = groupedSegments(segments);
    for (std::size_t i = 0; i < turns.size(); ++i)
        parts.append(format(i, turns[i]));
    return parts.join(separator) + (segments.empty() ? QString() : QStringLiteral("\n"));
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
    const ClockTime time = clockTime(seconds);
    return QString::asprintf("%02lld:%02lld:%02lld,%03lld", static_cast<long long>(time.hours),
                             static_cast<long long>(time.minutes), static_cast<long long>(time.seconds),
                             static_cast<long long>(time.milliseconds));
}

QString timestampPlain(double seconds) {
    const ClockTime time = clockTime(seconds);
    return QString::asprintf("%02lld:%02lld:%02lld", static_cast<long long>(time.hours),
                             static_cast<long long>(time.minutes), static_cast<long long>(time.seconds));
}

QString transcriptText(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns(segments, QStringLiteral("\n"), [&](std::size_t, const TranscriptSegmentGroup& turn) {
        return QStringLiteral("[") + withFullStop(timestampSRT(turn.start)) + QStringLiteral("] ") +
               spoken(turn, names);
    });
}

QString transcriptSRT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns(segments, QStringLiteral("\n\n"), [&](std::size_t index, const TranscriptSegmentGroup& turn) {
        return QString::number(index + 1) + QLatin1Char('\n') + timestampSRT(turn.start) + QStringLiteral(" --> ") +
               timestampSRT(turn.end) + QLatin1Char('\n') + spoken(turn, names);
    });
}

QString transcriptVTT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return QStringLiteral("WEBVTT\n\n") +
           joinTurns(segments, QStringLiteral("\n\n"), [&](std::size_t, const TranscriptSegmentGroup& turn) {
               return withFullStop(timestampSRT(turn.start)) + QStringLiteral(" --> ") +
                      withFullStop(timestampSRT(turn.end)) + QLatin1Char('\n') + spoken(turn, names);
           });
}

} // namespace corvane
