// corvanectl profiles
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCtl/Actions.h"
#include "CorvaneCtl/Choice.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FailureWatch.h"
#include "CorvaneCtl/ProfileChoice.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

ExitStatus finish(Session& session, const QUuid& id) {
    if (!session.wantsJson())
        return ExitStatus::ok;
    const auto& people = knownPeople(session);
    const auto person =
        std::find_if(people.begin(), people.end(), [&](const auto& one) { return one.profile.id == id; });
    if (person != people.end())
        session.printJson(profileJson(*person));
    return ExitStatus::ok;
}

QString table(const std::vector<SpeakerProfileSummary>& people) {
    std::vector<Named> all;
    all.reserve(people.size());
    for (const SpeakerProfileSummary& person : people)
        all.push_back({uuidText(person.profile.id), person.profile.displayName});
    const std::vector<QString> ids = shortIDs(all);
    std::vector<QStringList> rows{{QStringLiteral("ID"), QStringLiteral("VOICES"), QStringLiteral("MEETINGS"),
                                   QStringLiteral("SPEECH"), QStringLiteral("LAST SEEN"), QStringLiteral("NAME")}};
    for (std::size_t i = 0; i < people.size(); ++i) {
        const SpeakerProfileSummary& person = people[i];
        rows.push_back({ids[i], QString::number(person.observationCount), QString::number(person.meetingCount),
                        durationText(person.totalSpeechSeconds),
                        person.lastSeenAt
                            ? person.lastSeenAt->toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                            : QStringLiteral("never"),
                        visibleText(person.profile.displayName) +
                            (person.profile.enabled ? QString() : QStringLiteral(" (disabled)"))});
    }
    return tableText(rows);
}

ExitStatus list(Session& session) {
    static_cast<void>(actionOperands(session, 0, 0, "list"));
    const auto& people = knownPeople(session);
    if (session.wantsJson())
        session.printJson(encodeArray(people, profileJson));
    else if (people.empty())
        session.terminal().say(QStringLiteral("No profiles yet; corvanectl profiles create NAME makes one."));
    else
        session.terminal().print(table(people));
    return ExitStatus::ok;
}

ExitStatus create(Session& session) {
    const QString name = actionOperands(session, 1, 1, "create NAME").front().trimmed();
    const auto profile =
        session.model().createSpeakerProfile(name, session.line().value(QStringLiteral("notes")).value_or(QString()));
    requireDone(session, profile.has_value());
    if (session.wantsJson())
        session.printJson(profileJson({.profile = *profile, .lastSeenAt = {}, .latestMatchScore = {}}));
    else
        session.terminal().print(uuidText(profile->id) + QLatin1Char('\n'));
    return ExitStatus::ok;
}

ExitStatus rename(Session& session) {
    const QStringList given = actionOperands(session, 2, 2, "rename PROFILE NAME");
    const SpeakerProfile profile = chooseProfile(session, given[0]);
    const FailureWatch watch(session.model());
    const bool done = session.wait(session.model().updateSpeakerProfile(
        profile, given[1], session.line().value(QStringLiteral("notes")).value_or(profile.notes), profile.enabled));
    if (!watch.failure().isEmpty())
        throw CtlError(watch.failure());
    requireDone(session, done);
    return finish(session, profile.id);
}

ExitStatus enable(Session& session, bool enabled) {
    const QStringList given = actionOperands(session, 1, 1, enabled ? "enable PROFILE" : "disable PROFILE");
    const SpeakerProfile profile = chooseProfile(session, given[0]);
    requireDone(session, session.model().setSpeakerProfileEnabled(profile, enabled));
    return finish(session, profile.id);
}

ExitStatus remove(Session& session) {
    const QStringList given = actionOperands(session, 1, 1, "delete PROFILE");
    const SpeakerProfile profile = chooseProfile(session, given[0]);
    if (!session.line().has(QStringLiteral("yes"))) {
        if (!session.terminal().canAsk())
            throw UsageError(QStringLiteral("without a terminal to ask at, profiles delete needs --yes"));
        if (!session.terminal().confirm(
                QStringLiteral("Forget the voice of “%1” for good?").arg(profile.displayName))) {
            session.terminal().say(QStringLiteral("Nothing was deleted."));
            return ExitStatus::failed;
        }
    }
    requireDone(session, session.model().deleteSpeakerProfile(profile));
    if (session.wantsJson())
        session.printJson(
            QJsonObject{{QStringLiteral("id"), uuidText(profile.id)}, {QStringLiteral("name"), profile.displayName}});
    return ExitStatus::ok;
}

ExitStatus showMatching(Session& session) {
    static_cast<void>(knownPeople(session)); // so that what cannot be read is told
    const VoiceProfilesPart& people = session.model().voiceProfiles();
    if (session.wantsJson())
        session.printJson(QJsonObject{{QStringLiteral("matching"), people.voiceProfileMatchingEnabled()},
                                      {QStringLiteral("threshold"), people.voiceProfileMatchingThreshold()}});
    else
        session.terminal().print(
            QStringLiteral("matching %1, threshold %2\n")
                .arg(people.voiceProfileMatchingEnabled() ? QStringLiteral("on") : QStringLiteral("off"),
                     QString::number(people.voiceProfileMatchingThreshold(), 'g', QLocale::FloatingPointShortest)));
    return ExitStatus::ok;
}

ExitStatus matching(Session& session) {
    const QStringList given = actionOperands(session, 0, 1, "matching [on|off]");
    if (!given.isEmpty()) {
        if (given[0] != QLatin1String("on") && given[0] != QLatin1String("off"))
            throw UsageError(QStringLiteral("matching is on or off, not “%1”").arg(given[0]));
        requireDone(session, session.model().updateVoiceProfileMatchingEnabled(given[0] == QLatin1String("on")));
        if (!session.wantsJson())
            return ExitStatus::ok;
    }
    return showMatching(session);
}

ExitStatus threshold(Session& session) {
    const QStringList given = actionOperands(session, 0, 1, "threshold [X]");
    if (!given.isEmpty()) {
        bool isNumber = false;
        const double value = QLocale::c().toDouble(given[0], &isNumber);
        if (!isNumber || !(value >= 0 && value <= 1))
            throw UsageError(QStringLiteral("the threshold is a number from 0 to 1, not “%1”").arg(given[0]));
        requireDone(session, session.model().updateVoiceProfileMatchingThreshold(value));
        if (!session.wantsJson())
            return ExitStatus::ok;
    }
    return showMatching(session);
}

} // namespace

ExitStatus runProfiles(Session& session) {
    const QString action = session.line().operand(0).value_or(QStringLiteral("list"));
    if (action == QLatin1String("list"))
        return list(session);
    if (action == QLatin1String("create"))
        return create(session);
    if (action == QLatin1String("rename"))
        return rename(session);
    if (action == QLatin1String("enable"))
        return enable(session, true);
    if (action == QLatin1String("disable"))
        return enable(session, false);
    if (action == QLatin1String("delete"))
        return remove(session);
    if (action == QLatin1String("matching"))
        return matching(session);
    if (action == QLatin1String("threshold"))
        return threshold(session);
    throw UsageError(QStringLiteral("profiles can list, create, rename, enable, disable, delete, or show and set "
                                    "matching and threshold, not “%1”")
                         .arg(action));
}

} // namespace corvane::ctl
