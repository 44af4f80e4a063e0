// When a user must be told, while a recording runs, that something does not come through. Pure functions.
#pragma once

#include "CorvaneCore/Recording/CaptureReport.h"

#include <QString>

#include <optional>

namespace corvane {

// A microphone in a room is never digitally silent: that many seconds of it mean a muted or dead input. What the
// computer plays may well be silent, so that its silence is known but no reason to warn.
inline constexpr double silenceWarningSeconds = 15.0;

// The sentence for what has newly gone wrong on a track, or newly come right, between two readings; nothing if nothing
// has.
[[nodiscard]] std::optional<QString> captureWarning(const QString& track, const TrackHealth& before,
                                                    const TrackHealth& now);

} // namespace corvane
