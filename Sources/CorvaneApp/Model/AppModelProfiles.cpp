// The known people: making, changing and deleting them, and carrying a new name into the meetings they are in.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

#include <QFileInfo>

#include <algorithm>

namespace corvane {

namespace {

QString nameRequired() {
    return UserText::tr("Speaker profile name is required");
}

// Whether a result can name a person at all; most meetings are spared the decoding.
bool mentions(const QByteArray& result, const QUuid& profileID) {
    const QByteArray id = uuidText(profileID).toLatin1();
    return result.contains(id) || result.contains(id.toLower());
}

// Throws Error if the run's documents cannot be read or written.
void renameInRun(const QString& runDirectory, const QUuid& profileID, const QString& displayName) {
    const QString document = runFiles::in(runDirectory, runFiles::result);
    const auto content = readFile(document);
    if (!content && QFileInfo::exists(document))
        throw TranscriptRewriteError(UserText::tr("%1 cannot be read").arg(runFiles::result));
    if (!content || !mentions(*content, profileID))
        return;
    TranscriptResult result = decodeTranscriptResult(*content);
    if (!renameLinkedSpeakers(result.speakerProfileAssignments, result.speakerNames, profileID, displayName))
        return;
    for (SpeakerProfileMatchSuggestion& match : result.speakerProfileMatches) {
        if (match.profileID == profileID)
            match.displayName = displayName;
    }
    TranscriptExportRewriter().rewrite(runDirectory, result.speakerNames, result.speakerProfileAssignments,
                                       result.speakerProfileMatches);
}

} // namespace

void AppModel::reloadSpeakerProfiles() {
    try {
        m_voiceProfiles.reload();
    } catch (const StoreError& error) {
        say(UserText::tr("Failed to load speaker profiles: %1").arg(error.text()));
    }
}

bool AppModel::changeProfiles(const QString& failure, const QString& success,
                              const std::function<void(LocalStore&)>& change) {
    try {
        change(m_voiceProfiles.speakerStore());
    } catch (const StoreError& error) {
        say(failure.arg(error.text()));
        return false;
    }
    reloadSpeakerProfiles();
    if (!success.isEmpty())
        say(success);
    return true;
}

std::optional<SpeakerProfile> AppModel::createSpeakerProfile(const QString& displayName, const QString& notes) {
    const QString name = displayName.trimmed();
    std::optional<SpeakerProfile> profile;
    if (name.isEmpty())
        say(nameRequired());
    else
        changeProfiles(UserText::tr("Failed to create speaker profile: %1"), UserText::tr("Speaker profile created"),
                       [&](LocalStore& store) { profile = store.createSpeakerProfile(name, notes); });
    return profile;
}

QFuture<bool> AppModel::createProfileFromSpeakerVoice(const QString& speaker, const QString& displayName) {
    const QString name = displayName.trimmed();
    std::optional<SpeakerProfile> profile;
    if (name.isEmpty())
        say(nameRequired());
    else
        changeProfiles(UserText::tr("Failed to create speaker profile: %1"), {}, [&](LocalStore& store) {
            profile = store.createSpeakerProfile(name, QStringLiteral("Created from ") + speaker);
        });
    return profile ? addVoiceObservation(speaker, *profile) : QtFuture::makeReadyFuture(false);
}

QFuture<bool> AppModel::updateSpeakerProfile(const SpeakerProfile& profile, const QString& displayName,
                                             const QString& notes, bool enabled) {
    const QString name = displayName.trimmed();
    if (name.isEmpty()) {
        say(nameRequired());
        return QtFuture::makeReadyFuture(false);
    }
    if (name == profile.displayName && notes.trimmed() == profile.notes && enabled == profile.enabled)
        return QtFuture::makeReadyFuture(true);
    const bool isRenamed = name != profile.displayName;
    const QUuid id = profile.id;
    const bool done = changeProfiles(UserText::tr("Failed to update speaker profile: %1"), {},
                                     [&](LocalStore& store) { store.updateSpeakerProfile(id, name, notes, enabled); });
    if (done && isRenamed)
        return propagateSpeakerProfileDisplayName(id, name);
    if (done)
        say(UserText::tr("Speaker profile updated"));
    return QtFuture::makeReadyFuture(done);
}

bool AppModel::setSpeakerProfileEnabled(const SpeakerProfile& profile, bool enabled) {
    return changeProfiles(
        UserText::tr("Failed to update speaker profile: %1"),
        enabled ? UserText::tr("Speaker profile enabled") : UserText::tr("Speaker profile disabled"),
        [id = profile.id, enabled](LocalStore& store) { store.setSpeakerProfileEnabled(id, enabled); });
}

bool AppModel::deleteSpeakerProfile(const SpeakerProfile& profile) {
    return changeProfiles(UserText::tr("Failed to delete speaker profile: %1"), UserText::tr("Speaker profile deleted"),
                          [id = profile.id](LocalStore& store) { store.deleteSpeakerProfile(id); });
}

bool AppModel::deleteAllSpeakerProfiles() {
    return changeProfiles(UserText::tr("Failed to delete speaker profiles: %1"),
                          UserText::tr("All speaker profiles deleted"),
                          [](LocalStore& store) { store.deleteAllSpeakerProfiles(); });
}

bool AppModel::updateVoiceProfileMatchingEnabled(bool enabled) {
    try {
        m_voiceProfiles.speakerStore().setSpeakerProfileMatchingEnabled(enabled);
    } catch (const StoreError& error) {
        say(UserText::tr("Failed to update matching setting: %1").arg(error.text()));
        return false;
    }
    m_voiceProfiles.setMatchingEnabled(enabled);
    say(enabled ? UserText::tr("Voice profile matching enabled") : UserText::tr("Voice profile matching disabled"));
    return true;
}

bool AppModel::updateVoiceProfileMatchingThreshold(double threshold) {
    const double clamped = std::clamp(threshold, 0.0, 1.0);
    try {
        m_voiceProfiles.speakerStore().setSpeakerProfileMatchingThreshold(clamped);
    } catch (const StoreError& error) {
        say(UserText::tr("Failed to update matching threshold: %1").arg(error.text()));
        return false;
    }
    m_voiceProfiles.setMatchingThreshold(clamped);
    return true;
}

// The stored runs can be hundreds, each with four files to replace: one at a turn of the main loop, so that the window
// goes on answering, and always on the main thread, so that no other change of the same run comes between.
QFuture<bool> AppModel::propagateSpeakerProfileDisplayName(const QUuid& profileID, const QString& displayName) {
    if (m_speakerReview.renameProfile(profileID, displayName))
        saveSpeakerMappings();
    ProfileRename rename{
        .profileID = profileID, .displayName = displayName, .runs = {}, .hasFailed = false, .done = {}};
    for (const QString& run : m_services.files->list(m_paths.runs()).value_or(std::vector<QString>()))
        rename.runs.push_back(m_paths.runs() + QLatin1Char('/') + run);
    std::reverse(rename.runs.begin(), rename.runs.end());
    rename.done.start();
    QFuture<bool> done = rename.done.future();
    m_profileRenames.push_back(std::move(rename));
    m_profileRenameTimer.start();
    return done;
}

void AppModel::renameInNextRun() {
    ProfileRename& rename = m_profileRenames.front();
    if (!rename.runs.empty()) {
        const QString run = rename.runs.back();
        rename.runs.pop_back();
        if (m_detail.lastRunDirectory() == run) // selected since: its working copy must not bring the old name back
            m_speakerReview.renameProfile(rename.profileID, rename.displayName);
        try {
            renameInRun(run, rename.profileID, rename.displayName);
        } catch (const Error& error) {
            rename.hasFailed = true;
            say(UserText::tr("Failed to update profile tags in a meeting: %1: %2")
                    .arg(lastPathComponent(run), error.text()));
        }
        return;
    }
    ProfileRename finished = std::move(rename);
    m_profileRenames.pop_front();
    if (m_profileRenames.empty())
        m_profileRenameTimer.stop();
    reloadSpeakerProfiles();
    say(UserText::tr("Speaker profile updated"));
    finished.done.addResult(!finished.hasFailed);
    finished.done.finish();
}

} // namespace corvane
