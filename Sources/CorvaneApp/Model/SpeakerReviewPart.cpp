#include "CorvaneApp/Model/SpeakerReviewPart.h"

namespace corvane {

void SpeakerReviewPart::load(const TranscriptResult& result) {
    SpeakerNames mappings = result.speakerNames;
    for (const TranscriptSpeaker& speaker : result.speakers)
        mappings.try_emplace(speaker.speaker, QStringLiteral(""));
    publishAll(std::move(mappings), result.speakerProfileAssignments, result.speakerProfileMatches);
}

void SpeakerReviewPart::reset() {
    publishAll({}, {}, {});
}

void SpeakerReviewPart::setName(const QString& speaker, const QString& name) {
    SpeakerNames mappings = m_mappings;
    mappings.insert_or_assign(speaker, name);
    SpeakerProfileMatches matches = m_matches;
    std::erase_if(matches, [&](const SpeakerProfileMatchSuggestion& match) {
        return match.speaker == speaker && match.status == QLatin1String("suggested");
    });
    publishAll(std::move(mappings), m_assignments, std::move(matches));
}

void SpeakerReviewPart::publishAll(SpeakerNames mappings, SpeakerProfileAssignments assignments,
                                   SpeakerProfileMatches matches) {
    publish(m_mappings, std::move(mappings), "speakerMappings", &SpeakerReviewPart::speakerMappingsChanged);
    publish(m_assignments, std::move(assignments), "speakerProfileAssignments",
            &SpeakerReviewPart::speakerProfileAssignmentsChanged);
    publish(m_matches, std::move(matches), "speakerProfileMatches", &SpeakerReviewPart::speakerProfileMatchesChanged);
}

} // namespace corvane
