#include "CorvaneCore/Recording/CaptureWarnings.h"

#include "CorvaneContract/Text/UserText.h"

namespace corvane {

namespace {

constexpr double longestUntoldGapSeconds = 1.0;

QString trackName(const QString& track) {
    return track == captureTracks::microphone ? UserText::tr("the microphone") : UserText::tr("system audio");
}

// The report keeps a change in the words of the file; these are the same for a reader.
QString changeText(const QString& name, const QString& change) {
    if (change.startsWith(deviceChangeWords::changedTo))
        return UserText::tr("Recording: %1 changed to %2").arg(name, change.mid(deviceChangeWords::changedTo.size()));
    if (change.startsWith(deviceChangeWords::back))
        return UserText::tr("Recording: %1 back: %2").arg(name, change.mid(deviceChangeWords::back.size()));
    if (change == deviceChangeWords::lost)
        return UserText::tr("Recording: %1 lost").arg(name);
    return UserText::tr("Recording: %1 %2").arg(name, change);
}

bool isTooSilent(const QString& track, const TrackHealth& health) {
    return track == captureTracks::microphone && health.hasDevice &&
           health.currentSilenceSeconds >= silenceWarningSeconds;
}

} // namespace

std::optional<QString> captureWarning(const QString& track, const TrackHealth& before, const TrackHealth& now) {
    const QString name = trackName(track);
    if (now.isLosing && !before.isLosing)
        return UserText::tr("Recording is losing the sound of %1: the disk is full or cannot be written. What was "
                            "recorded until now is kept; make room to go on.")
            .arg(name);
    if (before.isLosing && !now.isLosing)
        return UserText::tr("Recording: the sound of %1 is written again").arg(name);
    if (now.hasDevice != before.hasDevice)
        return now.hasDevice ? UserText::tr("Recording: %1 is back").arg(name)
                             : UserText::tr("Recording without %1: its device is gone. Silence is recorded until it "
                                            "is back.")
                                   .arg(name);
    if (now.gapSeconds - before.gapSeconds >= longestUntoldGapSeconds)
        return UserText::tr("Recording: the sound server did not deliver %1 for %2 seconds")
            .arg(name, QString::number(now.gapSeconds - before.gapSeconds, 'f', 1));
    if (now.deviceChanges != before.deviceChanges)
        return changeText(name, now.deviceChanges.back());
    if (isTooSilent(track, now) && !isTooSilent(track, before))
        return UserText::tr("No sound comes from %1. Check that it is not muted.").arg(name);
    if (isTooSilent(track, before) && !isTooSilent(track, now))
        return UserText::tr("Recording");
    return std::nullopt;
}

} // namespace corvane
