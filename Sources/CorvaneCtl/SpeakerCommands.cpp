// corvanectl speaker, corvanectl match
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FailureWatch.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/ProfileChoice.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

// The meeting that is asked for, shown by the model, with its transcript.
MeetingListItem selectWithTranscript(Session& session) {
    MeetingListItem meeting = session.select(session.line().operand(0));
    if (meeting.isDraft() || !session.model().detail().transcriptResult())
        throw CtlError(
            QStringLiteral("“%1” has no transcript yet, and so no speakers").arg(visibleText(meeting.title)));
    return meeting;
}

void checkLabel(const TranscriptResult& result, const QString& label) {
    const auto& speakers = result.speakers;
    if (std::any_of(speakers.begin(), speakers.end(), [&](const auto& speaker) { return speaker.speaker == label; }))
        return;
    QString text = QStringLiteral("the meeting has no speaker “%1”").arg(label);
    if (!speakers.empty())
        text += QStringLiteral("; its speakers are:");
    for (const TranscriptSpeaker& speaker : speakers) {
        text += QStringLiteral("\n  ") + visibleText(speaker.speaker);
        if (const auto name = speakerName(result, speaker.speaker))
            text += QStringLiteral("  ") + visibleText(*name);
    }
    throw CtlError(text);
}

void nameByHand(Session& session, const QString& label, const QString& name) {
    AppModel& model = session.model();
    const auto& links = model.speakerReview().speakerProfileAssignments();
    if (const auto link = links.find(label); link != links.end())
        throw CtlError(QStringLiteral("%1 is linked to the profile “%2”; --remove takes the link away")
                           .arg(visibleText(label), visibleText(link->second.displayName)));
    model.speakerReview().setName(label, name);
    if (!model.saveSpeakerMappings())
        throw CtlError(model.status().statusMessage());
}

void linkToProfile(Session& session, const QString& label, const QString& words) {
    AppModel& model = session.model();
    const SpeakerProfile profile = chooseProfile(session, words);
    const SpeakerProfileMatches& matches = model.speakerReview().speakerProfileMatches();
    const auto suggestion = std::find_if(matches.begin(), matches.end(), [&](const auto& match) {
        return match.speaker == label && match.profileID == profile.id && match.status == suggestionStatus::suggested;
    });
    const FailureWatch watch(model);
    const auto added = suggestion != matches.end()
                           ? model.acceptSpeakerProfileMatch(SpeakerProfileMatchSuggestion(*suggestion))
                           : model.addVoiceObservation(label, profile);
    const bool done = session.wait(added);
    const auto& lines = model.speakerReview().voiceProfileUpdateMessages();
    const auto line = lines.find(label);
    const QString text = line == lines.end() ? model.status().statusMessage() : line->second.text;
    if (!done)
        throw CtlError(text.trimmed());
    if (!watch.failure().isEmpty()) // the voice is known, and the run does not say whose it is
        throw CtlError(watch.failure());
    session.terminal().say(visibleText(text));
}

void removeLink(Session& session, const QString& label) {
    AppModel& model = session.model();
    const FailureWatch watch(model);
    const bool done = model.removeSpeakerProfileAssignment(label);
    if (!done || !watch.failure().isEmpty())
        throw CtlError(watch.failure().isEmpty() ? model.status().statusMessage() : watch.failure());
    const auto& lines = model.speakerReview().voiceProfileUpdateMessages();
    if (const auto line = lines.find(label); line != lines.end()) // there was a link
        session.terminal().say(visibleText(line->second.text));
}

QJsonObject speakerJson(Session& session, const MeetingListItem& meeting, const QString& label) {
    const auto& result = session.model().detail().transcriptResult();
    QJsonObject json{{QStringLiteral("meeting"), meeting.id}};
    json.insert(QStringLiteral("label"), label);
    json.insert(QStringLiteral("name"), result ? textOrNull(speakerName(*result, label)) : QJsonValue());
    json.insert(QStringLiteral("profile"), result ? profileOf(*result, label) : QJsonValue());
    return json;
}

QJsonObject suggestionJson(const SpeakerProfileMatchSuggestion& match) {
    return {{QStringLiteral("label"), match.speaker},
            {QStringLiteral("profile"), uuidText(match.profileID)},
            {QStringLiteral("name"), match.displayName},
            {QStringLiteral("score"), match.score},
            {QStringLiteral("status"), match.status}};
}

// Why nothing can be compared, before it is tried.
void checkMatchable(Session& session) {
    const auto& people = knownPeople(session);
    AppModel& model = session.model();
    if (!model.voiceProfiles().voiceProfileMatchingEnabled())
        throw CtlError(QStringLiteral("matching is off; corvanectl profiles matching on switches it on"));
    if (std::none_of(people.begin(), people.end(),
                     [](const auto& person) { return person.profile.enabled && person.observationCount > 0; }))
        throw CtlError(QStringLiteral("no profile that is enabled has a voice yet; corvanectl speaker MEETING LABEL "
                                      "--profile PROFILE adds one"));
}

void compareVoices(Session& session, const MeetingListItem& meeting) {
    AppModel& model = session.model();
    const SpeakerReviewPart& review = model.speakerReview();
    if (!isWorthMatching(*model.detail().transcriptResult(), model.voiceProfiles().speakerProfiles()))
        return; // every speaker is linked
    const FailureWatch watch(model);
    if (!model.matchShownSpeakers())
        throw CtlError(model.status().statusMessage());
    session.runLoop([&](QEventLoop& loop) {
        const auto quitWhenDone = [&] {
            if (!review.isMatchingSpeakerProfiles())
                loop.quit();
        };
        QObject::connect(&review, &SpeakerReviewPart::isMatchingSpeakerProfilesChanged, &loop, quitWhenDone,
                         Qt::QueuedConnection);
        QMetaObject::invokeMethod(&loop, quitWhenDone, Qt::QueuedConnection);
    });
    session.throwIfInterrupted();
    if (!watch.failure().isEmpty())
        throw CtlError(QStringLiteral("%1: %2").arg(visibleText(meeting.title), watch.failure()));
}

} // namespace

ExitStatus runSpeaker(Session& session) {
    const CommandLine& line = session.line();
    const auto name = line.operand(2);
    const auto profile = line.value(QStringLiteral("profile"));
    const bool removes = line.has(QStringLiteral("remove"));
    if ((name ? 1 : 0) + (profile ? 1 : 0) + (removes ? 1 : 0) != 1)
        throw UsageError(QStringLiteral("speaker takes one of NAME, --profile and --remove"));
    const QString label = *line.operand(1);
    const MeetingListItem meeting = selectWithTranscript(session);
    checkLabel(*session.model().detail().transcriptResult(), label);
    if (name)
        nameByHand(session, label, name->trimmed());
    else if (profile)
        linkToProfile(session, label, *profile);
    else
        removeLink(session, label);
    if (session.wantsJson())
        session.printJson(speakerJson(session, meeting, label));
    return ExitStatus::ok;
}

ExitStatus runMatch(Session& session) {
    const MeetingListItem meeting = selectWithTranscript(session);
    const SpeakerReviewPart& review = session.model().speakerReview();
    if (review.speakerProfileMatches().empty()) {
        checkMatchable(session);
        compareVoices(session, meeting);
    }
    const SpeakerProfileMatches& matches = review.speakerProfileMatches();
    if (session.wantsJson()) {
        session.printJson(QJsonObject{{QStringLiteral("meeting"), meeting.id},
                                      {QStringLiteral("suggestions"), encodeArray(matches, suggestionJson)}});
        return ExitStatus::ok;
    }
    if (matches.empty()) {
        session.terminal().say(QStringLiteral("No speaker profile suggestions"));
        return ExitStatus::ok;
    }
    std::vector<QStringList> rows;
    for (const SpeakerProfileMatchSuggestion& match : matches)
        rows.push_back({visibleText(match.speaker), visibleText(match.displayName),
                        QString::number(match.score, 'f', 2), visibleText(match.status)});
    session.terminal().print(tableText(rows));
    return ExitStatus::ok;
}

} // namespace corvane::ctl
