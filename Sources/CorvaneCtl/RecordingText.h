// How corvanectl reads times and puts recordings for a person to read. Pure functions; times are in seconds.
#pragma once

#include "CorvaneCore/Recording/CaptureReport.h"

#include <QJsonObject>
#include <QString>

#include <map>
#include <optional>

namespace corvane::ctl {

// "90", "90s", "10m", "1h30m", "2h": above zero, at most a week. Throws UsageError.
[[nodiscard]] qint64 secondsOfDuration(const QString& text);
// "75", "75.5", "1:15", "1:02:03". Throws UsageError.
[[nodiscard]] double secondsOfPosition(const QString& text);

// "[######------]  -30 dB" of a peak from 0 to 1, the bar from -60 dB to full scale; "silent" of digital silence.
[[nodiscard]] QString levelText(double peak);

// One line: time, and the level of each track.
[[nodiscard]] QString meterText(const QString& state, double elapsedSeconds,
                                const std::map<QString, TrackHealth>& tracks);

// A table, one line a track: what was recorded and what is missing of it.
[[nodiscard]] QString captureText(const CaptureReport& report);
// By track: the times and counts of the report and its verdict.
[[nodiscard]] QJsonObject captureJson(const CaptureReport& report);

} // namespace corvane::ctl
