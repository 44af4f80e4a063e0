// The keys of the user defaults (docs/formats/defaults.md).
#pragma once

#include <QString>

namespace corvane {

namespace defaultsKeys {
inline const QString setupCompleted = QStringLiteral("setupCompleted");
inline const QString diarizationEnabled = QStringLiteral("defaultDiarizationEnabled");
inline const QString speakerCountMode = QStringLiteral("defaultSpeakerCountMode");
inline const QString speakerCount = QStringLiteral("defaultSpeakerCount");
inline const QString minSpeakerCount = QStringLiteral("defaultMinSpeakerCount");
inline const QString maxSpeakerCount = QStringLiteral("defaultMaxSpeakerCount");
inline const QString useOllamaSpeakerContext = QStringLiteral("useOllamaSpeakerContext");
inline const QString updateAutomaticChecksEnabled = QStringLiteral("updateAutomaticChecksEnabled");
inline const QString updateLastCheckAt = QStringLiteral("updateLastCheckAt");
inline const QString updateCachedManifest = QStringLiteral("updateCachedManifest");
inline const QString notionDatabaseURL = QStringLiteral("notionDatabaseURL");
inline const QString notionDatabaseTitle = QStringLiteral("notionDatabaseTitle");
inline const QString notionMeetingIDPropertyName = QStringLiteral("notionMeetingIDPropertyName");
inline const QString notionParticipantsPropertyName = QStringLiteral("notionParticipantsPropertyName");
inline const QString notionSummaryPropertyName = QStringLiteral("notionSummaryPropertyName");
// Another address of Notion's interface, for a proxy or a service of one's own. No surface sets it.
inline const QString notionServiceURL = QStringLiteral("notionServiceURL");
} // namespace defaultsKeys

} // namespace corvane
