// The working copy of the names and profile links of the shown run. result.json is the lasting truth; a refresh
// replaces this copy from it.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"

namespace corvane {

class SpeakerReviewPart final : public ModelPart {
    Q_OBJECT

public:
    using ModelPart::ModelPart;

    // A label without a name holds "", so that every speaker has a text to edit.
    [[nodiscard]] const SpeakerNames& speakerMappings() const { return m_mappings; }
    [[nodiscard]] const SpeakerProfileAssignments& speakerProfileAssignments() const { return m_assignments; }
    [[nodiscard]] const SpeakerProfileMatches& speakerProfileMatches() const { return m_matches; }

    void load(const TranscriptResult& result);
    void reset();
    // Takes a name as it was typed. A name given by hand ends the open suggestions for its label.
    void setName(const QString& speaker, const QString& name);

Q_SIGNALS:
    void speakerMappingsChanged();
    void speakerProfileAssignmentsChanged();
    void speakerProfileMatchesChanged();

private:
    void publishAll(SpeakerNames mappings, SpeakerProfileAssignments assignments, SpeakerProfileMatches matches);

    SpeakerNames m_mappings;
    SpeakerProfileAssignments m_assignments;
    SpeakerProfileMatches m_matches;
};

} // namespace corvane
