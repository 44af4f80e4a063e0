// How the settings page and corvanectl put the state of the update check. Pure functions; dates are in the local time
// zone.
#pragma once

#include "CorvaneCore/Services/UpdateAvailability.h"

#include <QLocale>

namespace corvane {

// A date of medium length and a short time, as the locale has them.
[[nodiscard]] QString updateDateText(const QDateTime& moment, const QLocale& locale);

[[nodiscard]] QString currentVersionText(const AppVersion& version);
[[nodiscard]] QString lastCheckedText(const std::optional<QDateTime>& lastCheckAt, const QLocale& locale);
// Empty while idle; of an available update its first line.
[[nodiscard]] QString updateStatusText(const UpdateCheckState& state);
// Nothing if the manifest does not tell when.
[[nodiscard]] std::optional<QString> publishedText(const UpdateManifest& manifest, const QLocale& locale);

} // namespace corvane
