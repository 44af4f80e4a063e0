// Voices: adding one of the shown run to a person, and finding out whose the others are. The worker runs beside the
// main loop; whatever comes back first checks that its run is still the one shown.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Jobs/WorkerLocator.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Library/RunIdentity.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"
#include "CorvaneCore/VoiceProfiles/VoiceExtraction.h"

namespace corvane {

namespace {

using Kind = VoiceProfileUpdateMessage::Kind;

QFuture<bool> ready(bool done) {
    return QtFuture::makeReadyFuture(done);
}

SpeakerProfileObservation observationOf(const ExtractedSpeakerEmbedding& extracted, const QUuid& profileID,
                                        const QString& meetingID, const QString& speaker) {
    return {.profileID = profileID,
            .embedding = extracted.embedding,
            .modelID = extracted.modelID,
            .dimension = extracted.dimension,
            .sampleCount = extracted.sampleCount,
            .totalSpeechSeconds = extracted.totalSpeechSeconds,
            .sourceRunID = extracted.sourceRunID,
            .sourceMeetingID = meetingID,
            .sourceLocalSpeaker = speaker};
}

} // namespace

// A voice on its way to a person.
struct AppModel::VoiceUpdate {
    QString runDirectory;
    QString speaker;
    QString meetingID;
    SpeakerProfile profile;
    VoiceExtraction extraction;

    [[nodiscard]] QString runID() const { return lastPathComponent(runDirectory); }
};

// The speakers of a run that are still to be compared, and what has been found.
struct AppModel::MatchingTask {
    QString runDirectory;
    QString worker;
    std::vector<QString> speakers;
    std::size_t next = 0;
    SpeakerProfileMatches matches;

    [[nodiscard]] QString runID() const { return lastPathComponent(runDirectory); }
};

std::optional<QString> AppModel::findWorker() const {
    return WorkerLocator{m_services.environment, m_services.currentDirectory, m_services.bundleResourceDirectory}
        .resolve();
}

bool AppModel::shouldApplyVoiceProfileUpdate(const QString& runID, const std::optional<QString>& expectedRunID) const {
    const auto& shown = m_detail.lastRunDirectory();
    return shown && lastPathComponent(*shown) == runID && expectedRunID == runID;
}

QFuture<CommandResult> AppModel::runSpeakerProfileExtraction(const VoiceExtraction& extraction) const {
    return inBackground([processes = m_services.processes, cancelled = m_commandsCancelled, extraction] {
        return extraction.run(*processes, cancelled);
    });
}

void AppModel::tellCard(const QString& speaker, Kind kind, const QString& text) {
    m_speakerReview.setMessage(speaker, {kind, text});
    say(text);
}

bool AppModel::hasVoiceOf(const QString& speaker, const SpeakerProfile& profile, const QString& runID) {
    try {
        return m_voiceProfiles.speakerStore().hasSpeakerProfileObservation(profile.id, runID, speaker, voiceModelID);
    } catch (const StoreError& error) {
        say(UserText::tr("Failed to check existing voice profile: %1").arg(error.text()));
        return false;
    }
}

QFuture<bool> AppModel::addVoiceObservation(const QString& speaker, const SpeakerProfile& profile) {
    if (!m_detail.lastRunDirectory())
        return ready(false);
    const QString run = *m_detail.lastRunDirectory();
    // From here on only the copies: what is saved is read back, and with it goes what the caller may have pointed into.
    VoiceUpdate update{.runDirectory = run, .speaker = speaker, .meetingID = {}, .profile = profile, .extraction = {}};
    assignSpeaker(update.speaker, update.profile);
    if (hasVoiceOf(update.speaker, update.profile, update.runID())) {
        tellCard(update.speaker, Kind::success,
                 UserText::tr("%1 is already linked to %2 for this meeting")
                     .arg(update.speaker, update.profile.displayName));
        return ready(true);
    }
    const auto worker = findWorker();
    if (!worker) {
        tellCard(update.speaker, Kind::failure, UserText::tr("corvane-worker not found"));
        return ready(false);
    }
    const auto meeting = selectedMeeting();
    update.meetingID = meeting ? meeting->id : RunIdentity::ofDirectory(run).meetingID();
    update.extraction = {.worker = *worker,
                         .runDirectory = run,
                         .speaker = update.speaker,
                         .output =
                             runFiles::in(run, speakerFileName(QStringLiteral("speaker_profile_"), update.speaker))};
    m_speakerReview.setVoiceProfileUpdateRunID(update.runID());
    m_speakerReview.setMessage(
        update.speaker, {Kind::running, UserText::tr("Extracting voice for %1").arg(update.profile.displayName)});
    say(UserText::tr("Extracting voice profile for %1").arg(update.speaker));
    return runSpeakerProfileExtraction(update.extraction).then(this, [this, update](const CommandResult& result) {
        return finishVoiceObservation(update, result);
    });
}

bool AppModel::finishVoiceObservation(const VoiceUpdate& update, const CommandResult& result) {
    Kind kind = Kind::success;
    QString text = UserText::tr("Voice added to %1").arg(update.profile.displayName);
    try {
        storeVoice(update, result);
    } catch (const Error& error) {
        kind = Kind::failure;
        text = UserText::tr("Voice profile update failed: %1").arg(error.text());
    }
    if (kind == Kind::success)
        reloadSpeakerProfiles();
    // Of two voices added at a time the first to finish ends the wait of both; the second still has its own line.
    const auto& messages = m_speakerReview.voiceProfileUpdateMessages();
    const auto line = messages.find(update.speaker);
    const bool waits = line != messages.end() && line->second.kind == Kind::running;
    const bool isCurrent = shouldApplyVoiceProfileUpdate(update.runID(), m_speakerReview.voiceProfileUpdateRunID());
    if (isCurrent)
        m_speakerReview.setVoiceProfileUpdateRunID(std::nullopt);
    if (isCurrent || (waits && m_detail.lastRunDirectory() == update.runDirectory))
        tellCard(update.speaker, kind, text);
    return kind == Kind::success;
}

void AppModel::storeVoice(const VoiceUpdate& update, const CommandResult& result) {
    if (result.status != 0)
        throw SpeakerProfileExtractionError::workerFailed(result);
    const ExtractedSpeakerEmbedding extracted = update.extraction.read();
    LocalStore& store = m_voiceProfiles.speakerStore();
    // A voice must not stay behind of a person who was deleted while it was on its way.
    if (!store.hasSpeakerProfile(update.profile.id))
        throw SpeakerProfileExtractionError(UserText::tr("the profile has been deleted"));
    store.addSpeakerProfileObservation(observationOf(extracted, update.profile.id, update.meetingID, update.speaker));
}

bool AppModel::matchShownSpeakers() {
    if (!findWorker()) {
        say(UserText::tr("corvane-worker not found"));
        return false;
    }
    const auto& result = m_detail.transcriptResult();
    if (!result || !startSpeakerProfileMatchingIfNeeded(TranscriptResult(*result), m_detail.lastRunDirectory())) {
        say(UserText::tr("No speaker profile suggestions"));
        return false;
    }
    return true;
}

bool AppModel::startSpeakerProfileMatchingIfNeeded(const TranscriptResult& result,
                                                   const std::optional<QString>& runDirectory) {
    if (!runDirectory || !m_voiceProfiles.voiceProfileMatchingEnabled() || m_speakerReview.isMatchingSpeakerProfiles())
        return false;
    const auto task = std::make_shared<MatchingTask>();
    task->runDirectory = *runDirectory;
    if (m_matchedRunIDs.contains(task->runID()) || !isWorthMatching(result, m_voiceProfiles.speakerProfiles()))
        return false;
    const auto worker = findWorker();
    if (!worker)
        return false; // tried again at the next refresh
    task->worker = *worker;
    task->matches = result.speakerProfileMatches;
    for (const TranscriptSpeaker& speaker : result.speakers) {
        if (!result.speakerProfileAssignments.contains(speaker.speaker))
            task->speakers.push_back(speaker.speaker);
    }
    m_matchedRunIDs.insert(task->runID());
    m_speakerReview.setSpeakerProfileMatchRunID(task->runID());
    say(UserText::tr("Matching speaker profiles"));
    matchNextSpeaker(task);
    return true;
}

// One after the other: each of them keeps a processor busy.
void AppModel::matchNextSpeaker(const std::shared_ptr<MatchingTask>& task) {
    if (task->next == task->speakers.size()) {
        finishMatching(*task);
        return;
    }
    const QString speaker = task->speakers[task->next++];
    const VoiceExtraction extraction{
        .worker = task->worker,
        .runDirectory = task->runDirectory,
        .speaker = speaker,
        .output = runFiles::in(task->runDirectory, speakerFileName(QStringLiteral("speaker_profile_match_"), speaker))};
    runSpeakerProfileExtraction(extraction).then(this, [this, task, extraction](const CommandResult& result) {
        try {
            if (result.status != 0)
                throw SpeakerProfileExtractionError::workerFailed(result);
            const ExtractedSpeakerEmbedding voice = extraction.read();
            const auto best = m_voiceProfiles.speakerStore().bestSpeakerProfileMatches(
                voice.embedding, voice.modelID, m_voiceProfiles.voiceProfileMatchingThreshold(), 1);
            if (!best.empty())
                task->matches = withSuggestion(std::move(task->matches), extraction.speaker, best.front());
        } catch (const Error&) {
            // A voice that cannot be compared has no suggestion, which is all there is to say of it.
        }
        matchNextSpeaker(task);
    });
}

void AppModel::finishMatching(const MatchingTask& task) {
    if (!shouldApplyVoiceProfileUpdate(task.runID(), m_speakerReview.speakerProfileMatchRunID()))
        return;
    m_speakerReview.setMatches(task.matches);
    m_speakerReview.setSpeakerProfileMatchRunID(std::nullopt);
    persistSpeakerProfileMatches();
    say(hasOpenSuggestion(task.matches) ? UserText::tr("Speaker profile suggestions ready")
                                        : UserText::tr("No speaker profile suggestions"));
}

} // namespace corvane
