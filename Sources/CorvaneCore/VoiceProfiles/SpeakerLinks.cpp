#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

#include <algorithm>

namespace corvane {

SpeakerProfileMatches withoutOpenSuggestions(SpeakerProfileMatches matches, const QString& speaker) {
    std::erase_if(matches, [&](const SpeakerProfileMatchSuggestion& match) {
        return match.speaker == speaker && match.status == suggestionStatus::suggested;
    });
    return matches;
}

SpeakerProfileMatches withSuggestion(SpeakerProfileMatches matches, const QString& speaker,
                                     const SpeakerProfileMatchCandidate& candidate) {
    matches = withoutOpenSuggestions(std::move(matches), speaker);
    matches.push_back({.speaker = speaker,
                       .profileID = candidate.profile.id,
                       .displayName = candidate.profile.displayName,
                       .score = candidate.score,
                       .status = suggestionStatus::suggested});
    return matches;
}

bool hasOpenSuggestion(const SpeakerProfileMatches& matches) {
    return std::any_of(matches.begin(), matches.end(),
                       [](const auto& match) { return match.status == suggestionStatus::suggested; });
}

bool isWorthMatching(const TranscriptResult& result, const std::vector<SpeakerProfileSummary>& profiles) {
    const auto isLinked = [&](const TranscriptSpeaker& speaker) {
        return result.speakerProfileAssignments.contains(speaker.speaker);
    };
    const auto hasVoice = [](const SpeakerProfileSummary& summary) {
        return summary.observationCount >= 1 && summary.profile.enabled;
    };
    return result.speakerProfileMatches.empty() &&
           !std::all_of(result.speakers.begin(), result.speakers.end(), isLinked) &&
           std::any_of(profiles.begin(), profiles.end(), hasVoice);
}

bool renameLinkedSpeakers(SpeakerProfileAssignments& assignments, SpeakerNames& names, const QUuid& profileID,
                          const QString& displayName) {
    bool found = false;
    for (auto& [speaker, assignment] : assignments) {
        if (assignment.profileID != profileID)
            continue;
        assignment.displayName = displayName;
        names.insert_or_assign(speaker, displayName);
        found = true;
    }
    return found;
}

} // namespace corvane
