#include "CorvaneApp/Model/SpeakerReviewPart.h"

#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

#include <algorithm>
#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

SpeakerReviewPart::SpeakerReviewPart(QObject* parent) : ModelPart(parent) {
    m_saveDelay.setSingleShot(true);
    m_saveDelay.setInterval(500ms);
    connect(&m_saveDelay, &QTimer::timeout, this, &SpeakerReviewPart::saveWanted);
}

void SpeakerReviewPart::load(const TranscriptResult& result) {
    SpeakerNames mappings = result.speakerNames;
    for (const TranscriptSpeaker& speaker : result.speakers)
        mappings.try_emplace(speaker.speaker, QStringLiteral(""));
    setMappings(std::move(mappings));
    setAssignments(result.speakerProfileAssignments);
    setMatches(result.speakerProfileMatches);
}

void SpeakerReviewPart::reset() {
    cancelSave();
    setMappings({});
    setAssignments({});
    setMatches({});
    publish(m_messages, {}, "voiceProfileUpdateMessages", &SpeakerReviewPart::voiceProfileUpdateMessagesChanged);
    setVoiceProfileUpdateRunID(std::nullopt);
    setSpeakerProfileMatchRunID(std::nullopt);
}

void SpeakerReviewPart::setName(const QString& speaker, const QString& name) {
    SpeakerNames mappings = m_mappings;
    mappings.insert_or_assign(speaker, name);
    setMappings(std::move(mappings));
    setMatches(withoutOpenSuggestions(m_matches, speaker));
}

void SpeakerReviewPart::assign(const QString& speaker, const SpeakerProfile& profile) {
    SpeakerProfileAssignments assignments = m_assignments;
    assignments.insert_or_assign(speaker,
                                 SpeakerProfileAssignment{.profileID = profile.id, .displayName = profile.displayName});
    setName(speaker, profile.displayName);
    setAssignments(std::move(assignments));
}

std::optional<SpeakerProfileAssignment> SpeakerReviewPart::removeAssignment(const QString& speaker) {
    SpeakerNames mappings = m_mappings;
    mappings.erase(speaker);
    SpeakerProfileAssignments assignments = m_assignments;
    const auto node = assignments.extract(speaker);
    setMappings(std::move(mappings));
    setAssignments(std::move(assignments));
    return node ? std::optional(node.mapped()) : std::nullopt;
}

bool SpeakerReviewPart::renameProfile(const QUuid& profileID, const QString& displayName) {
    SpeakerNames mappings = m_mappings;
    SpeakerProfileAssignments assignments = m_assignments;
    if (!renameLinkedSpeakers(assignments, mappings, profileID, displayName))
        return false;
    setMappings(std::move(mappings));
    setAssignments(std::move(assignments));
    return true;
}

void SpeakerReviewPart::setMatches(SpeakerProfileMatches matches) {
    publish(m_matches, std::move(matches), "speakerProfileMatches", &SpeakerReviewPart::speakerProfileMatchesChanged);
}

bool SpeakerReviewPart::setMatchStatus(const QString& suggestionID, const QString& status) {
    SpeakerProfileMatches matches = m_matches;
    const auto match =
        std::find_if(matches.begin(), matches.end(), [&](const auto& one) { return one.id() == suggestionID; });
    if (match == matches.end())
        return false;
    match->status = status;
    setMatches(std::move(matches));
    return true;
}

void SpeakerReviewPart::setMessage(const QString& speaker, VoiceProfileUpdateMessage message) {
    VoiceProfileUpdateMessages messages = m_messages;
    messages.insert_or_assign(speaker, std::move(message));
    publish(m_messages, std::move(messages), "voiceProfileUpdateMessages",
            &SpeakerReviewPart::voiceProfileUpdateMessagesChanged);
}

void SpeakerReviewPart::setVoiceProfileUpdateRunID(std::optional<QString> runID) {
    publish(m_updateRunID, std::move(runID), "isUpdatingVoiceProfile",
            &SpeakerReviewPart::isUpdatingVoiceProfileChanged);
}

void SpeakerReviewPart::setSpeakerProfileMatchRunID(std::optional<QString> runID) {
    publish(m_matchRunID, std::move(runID), "isMatchingSpeakerProfiles",
            &SpeakerReviewPart::isMatchingSpeakerProfilesChanged);
}

void SpeakerReviewPart::setMappings(SpeakerNames mappings) {
    publish(m_mappings, std::move(mappings), "speakerMappings", &SpeakerReviewPart::speakerMappingsChanged);
}

void SpeakerReviewPart::setAssignments(SpeakerProfileAssignments assignments) {
    publish(m_assignments, std::move(assignments), "speakerProfileAssignments",
            &SpeakerReviewPart::speakerProfileAssignmentsChanged);
}

} // namespace corvane
