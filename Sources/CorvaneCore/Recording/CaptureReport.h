// The verdict on a meeting's capture, kept beside its draft in capture.json: what was recorded of each track, what is
// silence, what is missing. The other documents know nothing of it, and it may be missing. Values; any thread.
#pragma once

#include "CorvaneCore/Recording/TrackMonitor.h"

#include <QString>

#include <map>
#include <optional>

namespace corvane {

// One word a user can act on, worst first.
enum class CaptureVerdict { nothingRecorded, soundMissing, silent, good };

struct CaptureReport {
    std::map<QString, TrackHealth> tracks; // "microphone", "system"

    friend bool operator==(const CaptureReport&, const CaptureReport&) = default;
};

namespace captureTracks {
inline const QString microphone = QStringLiteral("microphone");
inline const QString system = QStringLiteral("system");
} // namespace captureTracks

// More than a second lost or never delivered is missing sound; a track of digital silence alone is silent.
[[nodiscard]] CaptureVerdict captureVerdict(const TrackHealth& track);
[[nodiscard]] QString verdictWord(CaptureVerdict verdict);

// A later stretch of the same meeting, after a crash, adds to what is known of the earlier one.
[[nodiscard]] TrackHealth combined(const TrackHealth& earlier, const TrackHealth& later);
[[nodiscard]] CaptureReport combined(const CaptureReport& earlier, CaptureReport later);

inline const QString captureReportFile = QStringLiteral("capture.json");
[[nodiscard]] std::optional<CaptureReport> readCaptureReport(const QString& meetingDirectory);
// Atomic while there is room for both; then the old one goes first. Throws FileError, and then no report is left.
void writeCaptureReport(const CaptureReport& report, const QString& meetingDirectory);

} // namespace corvane
