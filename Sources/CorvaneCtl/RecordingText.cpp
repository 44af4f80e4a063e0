#include "CorvaneCtl/RecordingText.h"

#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Text.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace corvane::ctl {

namespace {

constexpr double lowestDecibels = -60.0;
constexpr int levelCells = 12;
constexpr double longestDurationSeconds = 7 * 86400;

QString seconds(double value) {
    return QString::number(value, 'f', 1) + QStringLiteral(" s");
}

QStringList captureRow(const QString& name, const TrackHealth& track) {
    QStringList missing;
    if (track.silentSeconds > 0)
        missing.append(QStringLiteral("silent for ") + seconds(track.silentSeconds));
    if (track.lostSeconds > 0)
        missing.append(QStringLiteral("not written: ") + seconds(track.lostSeconds));
    if (track.gaps > 0)
        missing.append(QStringLiteral("not delivered: %1 in %2 gaps").arg(seconds(track.gapSeconds)).arg(track.gaps));
    if (!track.deviceChanges.empty())
        missing.append(QStringLiteral("%1 device changes").arg(track.deviceChanges.size()));
    return {QStringLiteral("  ") + visibleText(name), verdictWord(captureVerdict(track)),
            seconds(track.recordedSeconds), missing.join(QStringLiteral(", "))};
}

QJsonObject trackJson(const TrackHealth& track) {
    return {
        {QStringLiteral("verdict"), verdictWord(captureVerdict(track))},
        {QStringLiteral("recordedSeconds"), track.recordedSeconds},
        {QStringLiteral("silentSeconds"), track.silentSeconds},
        {QStringLiteral("lostSeconds"), track.lostSeconds},
        {QStringLiteral("gapSeconds"), track.gapSeconds},
        {QStringLiteral("gaps"), static_cast<qint64>(track.gaps)},
        {QStringLiteral("failedWrites"), static_cast<qint64>(track.failedWrites)},
        {QStringLiteral("deviceChanges"),
         encodeArray(track.deviceChanges, [](const QString& change) { return QJsonValue(change); })},
    };
}

} // namespace

qint64 secondsOfDuration(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(?:([0-9]+)h)?(?:([0-9]+)m)?(?:([0-9]+)s?)?\\z"));
    const auto match = form.match(text);
    double total = 0;
    for (const auto& [group, unit] : {std::pair(1, 3600.0), std::pair(2, 60.0), std::pair(3, 1.0)})
        total += match.captured(group).toDouble() * unit;
    if (!match.hasMatch() || !(total > 0 && total <= longestDurationSeconds))
        throw UsageError(
            QStringLiteral("a duration is written as 90, 90s, 10m or 1h30m, up to a week, not “%1”").arg(text));
    return static_cast<qint64>(total);
}

double secondsOfPosition(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(?:([0-9]{1,4}):)?([0-9]{1,2}):(?=[0-5][0-9](?:\\.|\\z)))?([0-9]{1,9}(?:\\.[0-9]+)?)\\z"));
    const auto match = form.match(text);
    const double minutes = match.captured(2).toDouble();
    if (!match.hasMatch() || (!match.captured(1).isEmpty() && minutes >= 60))
        throw UsageError(QStringLiteral("a time is written as 75, 1:15 or 1:02:03, not “%1”").arg(text));
    return match.captured(1).toDouble() * 3600 + minutes * 60 + match.captured(3).toDouble();
}

QString levelText(double peak) {
    if (!(peak > 0))
        return QStringLiteral("silent");
    const double decibels = std::clamp(20.0 * std::log10(peak), lowestDecibels, 0.0);
    const int filled = static_cast<int>(std::lround((decibels - lowestDecibels) / -lowestDecibels * levelCells));
    return QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(levelCells - filled, QLatin1Char('-')) +
           QString::asprintf("] %3.0f dB", std::round(decibels) + 0.0);
}

QString meterText(const QString& state, double elapsedSeconds, const std::map<QString, TrackHealth>& tracks) {
    constexpr int levelWidth = levelCells + 9;
    QString text = state + QStringLiteral("  ") + durationText(elapsedSeconds);
    for (const auto& [name, track] : tracks) {
        const QString level = track.hasDevice ? levelText(track.peak) : QStringLiteral("no device");
        text += QStringLiteral("  ") + visibleText(name) + QLatin1Char(' ') + level.leftJustified(levelWidth);
    }
    return text;
}

QString captureText(const CaptureReport& report) {
    std::vector<QStringList> rows;
    for (const auto& [name, track] : report.tracks)
        rows.push_back(captureRow(name, track));
    return tableText(rows);
}

QJsonObject captureJson(const CaptureReport& report) {
    return encodeMap(report.tracks, trackJson);
}

} // namespace corvane::ctl
