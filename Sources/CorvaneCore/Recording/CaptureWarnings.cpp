#include "CorvaneCore/Recording/CaptureWarnings.h"

namespace corvane {

namespace {

constexpr double longestUntoldGapSeconds = 1.0;

QString trackName(const QString& track) {
    return track == captureTracks::microphone ? QStringLiteral("the microphone") : QStringLiteral("system audio");
}

bool isTooSilent(const QString& track, const TrackHealth& health) {
    return track == captureTracks::microphone && health.hasDevice &&
           health.currentSilenceSeconds >= silenceWarningSeconds;
}

} // namespace

std::optional<QString> captureWarning(const QString& track, const TrackHealth& before, const TrackHealth& now) {
    const QString name = trackName(track);
    if (now.isLosing && !before.isLosing)
        return QStringLiteral("Recording is losing the sound of %1: the disk is full or cannot be written. What was "
                              "recorded until now is kept; make room to go on.")
            .arg(name);
    if (before.isLosing && !now.isLosing)
        return QStringLiteral("Recording: the sound of %1 is written again").arg(name);
    if (now.hasDevice != before.hasDevice)
        return now.hasDevice ? QStringLiteral("Recording: %1 is back").arg(name)
                             : QStringLiteral("Recording without %1: its device is gone. Silence is recorded until it "
                                              "is back.")
                                   .arg(name);
    if (now.gapSeconds - before.gapSeconds >= longestUntoldGapSeconds)
        return QStringLiteral("Recording: the sound server did not deliver %1 for %2 seconds")
            .arg(name, QString::number(now.gapSeconds - before.gapSeconds, 'f', 1));
    if (now.deviceChanges != before.deviceChanges)
        return QStringLiteral("Recording: %1 %2").arg(name, now.deviceChanges.back());
    if (isTooSilent(track, now) && !isTooSilent(track, before))
        return QStringLiteral("No sound comes from %1. Check that it is not muted.").arg(name);
    if (isTooSilent(track, before) && !isTooSilent(track, now))
        return QStringLiteral("Recording");
    return std::nullopt;
}

} // namespace corvane
