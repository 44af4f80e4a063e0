// How the speakers of a run are tied to known people: suggestions and when they end, links and a person's new name.
// Pure functions.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

namespace corvane {

namespace suggestionStatus {
inline const QString suggested = QStringLiteral("suggested"); // waits for the user's answer
inline const QString accepted = QStringLiteral("accepted");   // kept as a record, like the next one
inline const QString rejected = QStringLiteral("rejected");
} // namespace suggestionStatus

// Without the label's open suggestions: it has got a name or a profile. Answered ones stay.
[[nodiscard]] SpeakerProfileMatches withoutOpenSuggestions(SpeakerProfileMatches matches, const QString& speaker);

// With one open suggestion for the label, in place of the ones before.
[[nodiscard]] SpeakerProfileMatches withSuggestion(SpeakerProfileMatches matches, const QString& speaker,
                                                   const SpeakerProfileMatchCandidate& candidate);

[[nodiscard]] bool hasOpenSuggestion(const SpeakerProfileMatches& matches);

// Whether comparing the voices of a run with the known ones can lead to anything: nothing was ever suggested for it,
// not all of its speakers are linked, and an enabled person has a voice.
[[nodiscard]] bool isWorthMatching(const TranscriptResult& result, const std::vector<SpeakerProfileSummary>& profiles);

// Gives the labels that are linked to a person the person's new name. False if none is; labels linked to others, and
// names typed by hand, stay.
bool renameLinkedSpeakers(SpeakerProfileAssignments& assignments, SpeakerNames& names, const QUuid& profileID,
                          const QString& displayName);

} // namespace corvane
