#include "CorvaneCore/Recording/CaptureReport.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <QFile>

namespace corvane {

namespace {

constexpr double toleratedLossSeconds = 1.0;

QJsonObject encodeTrack(const TrackHealth& track) {
    return {{QStringLiteral("recorded_seconds"), track.recordedSeconds},
            {QStringLiteral("silent_seconds"), track.silentSeconds},
            {QStringLiteral("lost_seconds"), track.lostSeconds},
            {QStringLiteral("gap_seconds"), track.gapSeconds},
            {QStringLiteral("gaps"), static_cast<qint64>(track.gaps)},
            {QStringLiteral("failed_writes"), static_cast<qint64>(track.failedWrites)},
            {QStringLiteral("device_changes"),
             encodeArray(track.deviceChanges, [](const QString& change) { return change; })},
            {QStringLiteral("verdict"), verdictWord(captureVerdict(track))}};
}

TrackHealth decodeTrack(JsonView view) {
    const JsonObject object = view.object();
    TrackHealth track;
    track.recordedSeconds = object.required("recorded_seconds").number();
    track.silentSeconds = object.required("silent_seconds").number();
    track.lostSeconds = object.required("lost_seconds").number();
    track.gapSeconds = object.required("gap_seconds").number();
    track.gaps = object.required("gaps").integer();
    track.failedWrites = object.required("failed_writes").integer();
    track.deviceChanges =
        decodeArray(object.required("device_changes"), [](JsonView change) { return change.string(); });
    return track;
}

QString reportPath(const QString& meetingDirectory) {
    return meetingDirectory + QLatin1Char('/') + captureReportFile;
}

} // namespace

CaptureVerdict captureVerdict(const TrackHealth& track) {
    if (!(track.recordedSeconds > 0))
        return CaptureVerdict::nothingRecorded;
    if (track.lostSeconds + track.gapSeconds > toleratedLossSeconds)
        return CaptureVerdict::soundMissing;
    return track.silentSeconds >= track.recordedSeconds ? CaptureVerdict::silent : CaptureVerdict::good;
}

QString verdictWord(CaptureVerdict verdict) {
    switch (verdict) {
    case CaptureVerdict::nothingRecorded:
        return QStringLiteral("nothing recorded");
    case CaptureVerdict::soundMissing:
        return QStringLiteral("sound missing");
    case CaptureVerdict::silent:
        return QStringLiteral("silent");
    case CaptureVerdict::good:
        break;
    }
    return QStringLiteral("good");
}

TrackHealth combined(const TrackHealth& earlier, const TrackHealth& later) {
    TrackHealth both = later;
    both.recordedSeconds += earlier.recordedSeconds;
    both.silentSeconds += earlier.silentSeconds;
    both.lostSeconds += earlier.lostSeconds;
    both.gapSeconds += earlier.gapSeconds;
    both.gaps += earlier.gaps;
    both.failedWrites += earlier.failedWrites;
    both.deviceChanges.insert(both.deviceChanges.begin(), earlier.deviceChanges.begin(), earlier.deviceChanges.end());
    return both;
}

CaptureReport combined(const CaptureReport& earlier, CaptureReport later) {
    for (const auto& [track, health] : earlier.tracks) {
        const auto [both, isNew] = later.tracks.try_emplace(track, health);
        if (!isNew)
            both->second = combined(health, both->second);
    }
    return later;
}

std::optional<CaptureReport> readCaptureReport(const QString& meetingDirectory) {
    const auto content = readFile(reportPath(meetingDirectory));
    if (!content)
        return std::nullopt;
    try {
        const JsonDocument document(*content);
        return CaptureReport{document.root().object().required("tracks").object().map(decodeTrack)};
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

void writeCaptureReport(const CaptureReport& report, const QString& meetingDirectory) {
    const QString path = reportPath(meetingDirectory);
    const QByteArray content =
        prettyJson(QJsonObject{{QStringLiteral("tracks"), encodeMap(report.tracks, encodeTrack)}});
    try {
        writeFileAtomically(path, content);
    } catch (const FileError&) {
        // A report that is no longer true must not stay, and on a full disk its room is what the new one needs.
        if (!QFile::remove(path))
            throw;
        writeFileAtomically(path, content);
    }
}

} // namespace corvane
