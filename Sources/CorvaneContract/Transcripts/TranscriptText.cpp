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

// As "%0<width>lld" prints it.
void appendPadded(QString& text, std::int64_t value, int width) {
    const QString digits = QString::number(value);
    for (qsizetype i = digits.size(); i < width; ++i)
        text += QLatin1Char('0');
    text += digits;
}

void appendClock(QString& text, const ClockTime& time) {
    appendPadded(text, time.hours, 2);
    text += QLatin1Char(':');
    appendPadded(text, time.minutes, 2);
    text += QLatin1Char(':');
    appendPadded(text, time.seconds, 2);
}

// With a comma or a full stop before the milliseconds.
void appendTimestamp(QString& text, double seconds, QLatin1Char separator) {
    const ClockTime time = clockTime(seconds);
    appendClock(text, time);
    text += separator;
    appendPadded(text, time.milliseconds, 3);
}

constexpr QLatin1Char comma(',');
constexpr QLatin1Char fullStop('.');

void appendSpan(QString& text, const TranscriptSegmentGroup& turn, QLatin1Char separator) {
    appendTimestamp(text, turn.start, separator);
    text += QLatin1String(" --> ");
    appendTimestamp(text, turn.end, separator);
    text += QLatin1Char('\n');
}

// Joins what `append(text, index, turn)` writes before the name and the words of each turn, and ends with a line feed
// if there is any segment at all.
template<typename Append>
QString joinTurns(const QString& header, const std::vector<TranscriptSegment>& segments, const SpeakerNames& names,
                  QLatin1String separator, Append append) {
    QString text = header;
    const auto turns = groupedSegments(segments);
    for (std::size_t i = 0; i < turns.size(); ++i) {
        if (i > 0)
            text += separator;
        append(text, i, turns[i]);
        text += displayName(turns[i].speaker, names);
        text += QLatin1String(": ");
        text += turns[i].text;
    }
    if (!segments.empty())
        text += QLatin1Char('\n');
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
    QString text;
    appendTimestamp(text, seconds, comma);
    return text;
}

QString timestampPlain(double seconds) {
    QString text;
    appendClock(text, clockTime(seconds));
    return text;
}

QString transcriptText(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns({}, segments, names, QLatin1String("\n"),
                     [](QString& text, std::size_t, const TranscriptSegmentGroup& turn) {
                         text += QLatin1Char('[');
                         appendTimestamp(text, turn.start, fullStop);
                         text += QLatin1String("] ");
                     });
}

QString transcriptSRT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns({}, segments, names, QLatin1String("\n\n"),
                     [](QString& text, std::size_t index, const TranscriptSegmentGroup& turn) {
                         text += QString::number(index + 1);
                         text += QLatin1Char('\n');
                         appendSpan(text, turn, comma);
                     });
}

QString transcriptVTT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names) {
    return joinTurns(
        QStringLiteral("WEBVTT\n\n"), segments, names, QLatin1String("\n\n"),
        [](QString& text, std::size_t, const TranscriptSegmentGroup& turn) { appendSpan(text, turn, fullStop); });
}

} // namespace corvane
