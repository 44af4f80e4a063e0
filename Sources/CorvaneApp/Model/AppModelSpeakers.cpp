// The speakers of the shown run: their names, and their links to known people.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

namespace corvane {

void AppModel::writeSpeakerReview(const QString& runDirectory) {
    TranscriptExportRewriter().rewrite(runDirectory, m_speakerReview.speakerMappings(),
                                       m_speakerReview.speakerProfileAssignments(),
                                       m_speakerReview.speakerProfileMatches());
    m_speakerReview.cancelSave();
}

bool AppModel::saveSpeakerMappings() {
    if (!m_detail.lastRunDirectory())
        return false;
    try {
        writeSpeakerReview(*m_detail.lastRunDirectory());
    } catch (const Error& error) {
        say(UserText::tr("Failed to save speaker names: %1").arg(error.text()));
        return false;
    }
    refreshRun();
    say(UserText::tr("Speaker names saved automatically"));
    return true;
}

void AppModel::updateSpeakerName(const QString& speaker, const QString& name) {
    m_speakerReview.setName(speaker, name);
    if (m_detail.lastRunDirectory())
        m_speakerReview.scheduleSave();
}

// The main loop has ended, and with it the half second that the name was waiting for.
void AppModel::saveWhatIsDue() {
    if (!m_speakerReview.isSaveDue() || !m_detail.lastRunDirectory())
        return;
    try {
        writeSpeakerReview(*m_detail.lastRunDirectory());
    } catch (const Error& error) {
        qWarning("Failed to save speaker names: %s", qUtf8Printable(error.text()));
    }
}

void AppModel::persistSpeakerProfileMatches() {
    if (!m_detail.lastRunDirectory())
        return;
    try {
        writeSpeakerReview(*m_detail.lastRunDirectory());
    } catch (const Error& error) {
        say(UserText::tr("Failed to save speaker profile matches: %1").arg(error.text()));
        return;
    }
    m_detail.setTranscript(TranscriptResultReader().read(*m_detail.lastRunDirectory()), m_detail.transcriptText());
}

bool AppModel::updateSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion, const QString& status) {
    if (!m_speakerReview.setMatchStatus(suggestion.id(), status))
        return false;
    persistSpeakerProfileMatches();
    return true;
}

QFuture<bool> AppModel::acceptSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion) {
    const auto profile = m_voiceProfiles.find(suggestion.profileID);
    if (!profile)
        return QtFuture::makeReadyFuture(false);
    const QString speaker = suggestion.speaker;
    updateSpeakerProfileMatch(suggestion, suggestionStatus::accepted);
    return addVoiceObservation(speaker, *profile);
}

void AppModel::rejectSpeakerProfileMatch(const SpeakerProfileMatchSuggestion& suggestion) {
    updateSpeakerProfileMatch(suggestion, suggestionStatus::rejected);
    say(UserText::tr("Speaker profile suggestion rejected"));
}

bool AppModel::assignSpeaker(const QString& speaker, const SpeakerProfile& profile) {
    m_speakerReview.assign(speaker, profile);
    return saveSpeakerMappings();
}

bool AppModel::removeSpeakerProfileAssignment(const QString& speaker) {
    const auto removed = m_speakerReview.removeAssignment(speaker);
    bool done = true;
    if (removed && m_detail.lastRunDirectory()) {
        try {
            const bool hadVoice = m_voiceProfiles.speakerStore().deleteSpeakerProfileObservation(
                removed->profileID, lastPathComponent(*m_detail.lastRunDirectory()), speaker, voiceModelID);
            reloadSpeakerProfiles();
            m_speakerReview.setMessage(speaker,
                                       {VoiceProfileUpdateMessage::Kind::success,
                                        hadVoice ? UserText::tr("Voice removed from %1").arg(removed->displayName)
                                                 : UserText::tr("Profile tag removed")});
        } catch (const StoreError& error) {
            m_speakerReview.setMessage(speaker, {VoiceProfileUpdateMessage::Kind::failure,
                                                 UserText::tr("Could not remove profile voice: %1").arg(error.text())});
            say(UserText::tr("Failed to remove profile voice: %1").arg(error.text()));
            done = false;
        }
    }
    return saveSpeakerMappings() && done;
}

} // namespace corvane
