// The JSON forms of what corvanectl shows, told in its manual page. Pure functions.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Library/MeetingLibrary.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

namespace corvane::ctl {

// Nothing for a time that could not be read.
[[nodiscard]] std::optional<QDateTime> timeOf(FileTime time);

[[nodiscard]] QJsonValue textOrNull(const std::optional<QString>& text);

// All fields of the list entry; times are ISO 8601 in UTC.
[[nodiscard]] QJsonObject meetingJson(const MeetingListItem& meeting);
[[nodiscard]] QJsonObject settingsJson(const ProcessingSettings& settings);
// An array of {"label", "name", "profile", "speechSeconds"}; name and profile, the id of a known person, are null where
// none is given.
[[nodiscard]] QJsonArray speakersJson(const TranscriptResult& result);

// The id of the known person that a speaker is linked to, or null.
[[nodiscard]] QJsonValue profileOf(const TranscriptResult& result, const QString& label);

// The name of a speaker, or nothing if it has none of more than blanks.
[[nodiscard]] std::optional<QString> speakerName(const TranscriptResult& result, const QString& label);

} // namespace corvane::ctl
