// The columns of a stored profile, as two of the store's queries read them. Private to the store.
#pragma once

#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"
#include "CorvaneCore/VoiceProfiles/SqliteConnection.h"

namespace corvane {

// Seconds since 1970-01-01 00:00:00 UTC, with fractions. A number that no date can have gives the nearest one.
[[nodiscard]] QDateTime dateFromSeconds(double seconds);

// The canonical form with hyphens and without braces, in either letter case.
[[nodiscard]] std::optional<QUuid> storedUuid(const QString& text);

// Columns 0 to 5: id, display_name, notes, enabled, created_at, updated_at.
[[nodiscard]] SpeakerProfile storedProfile(const SqliteStatement& row, const QUuid& id);

} // namespace corvane
