// Writing the names that the user gave into the shown run.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"

namespace corvane {

bool AppModel::saveSpeakerMappings() {
    if (!m_detail.lastRunDirectory())
        return false;
    try {
        TranscriptExportRewriter().rewrite(*m_detail.lastRunDirectory(), m_speakerReview.speakerMappings(),
                                           m_speakerReview.speakerProfileAssignments(),
                                           m_speakerReview.speakerProfileMatches());
    } catch (const Error& error) {
        say(QStringLiteral("Failed to save speaker names: ") + error.text());
        return false;
    }
    refreshRun();
    say(QStringLiteral("Speaker names saved automatically"));
    return true;
}

} // namespace corvane
