#include "CorvaneCtl/ProfileChoice.h"

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCtl/Choice.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"

namespace corvane::ctl {

const std::vector<SpeakerProfileSummary>& knownPeople(Session& session) {
    VoiceProfilesPart& people = session.model().voiceProfiles();
    try {
        people.reload();
    } catch (const StoreError& error) {
        throw CtlError(QStringLiteral("the voice profiles in %1 cannot be read: %2")
                           .arg(session.model().paths().database(), error.message()));
    }
    return people.speakerProfiles();
}

SpeakerProfile chooseProfile(Session& session, const QString& words) {
    const auto& people = knownPeople(session);
    std::vector<Named> all;
    all.reserve(people.size());
    for (const SpeakerProfileSummary& person : people)
        all.push_back({uuidText(person.profile.id), person.profile.displayName});
    static const ChoiceWords refusal{
        QStringLiteral("profiles"), QStringLiteral("an empty text names no profile"),
        QStringLiteral("no profile has the id or the name “%1”; corvanectl profiles lists them")};
    return people[choose(all, words, refusal)].profile;
}

QJsonObject profileJson(const SpeakerProfileSummary& summary) {
    const auto time = [](const QDateTime& moment) { return moment.toUTC().toString(Qt::ISODateWithMs); };
    return {{QStringLiteral("id"), uuidText(summary.profile.id)},
            {QStringLiteral("name"), summary.profile.displayName},
            {QStringLiteral("notes"), summary.profile.notes},
            {QStringLiteral("enabled"), summary.profile.enabled},
            {QStringLiteral("voices"), static_cast<qint64>(summary.observationCount)},
            {QStringLiteral("meetings"), static_cast<qint64>(summary.meetingCount)},
            {QStringLiteral("speechSeconds"), summary.totalSpeechSeconds},
            {QStringLiteral("createdAt"), time(summary.profile.createdAt)},
            {QStringLiteral("updatedAt"), time(summary.profile.updatedAt)},
            {QStringLiteral("lastSeenAt"), summary.lastSeenAt ? QJsonValue(time(*summary.lastSeenAt)) : QJsonValue()}};
}

} // namespace corvane::ctl
