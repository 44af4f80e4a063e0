// corvanectl rename, corvanectl speaker
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

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

} // namespace

ExitStatus runRename(Session& session) {
    const QString title = session.line().operand(1)->trimmed();
    if (title.isEmpty())
        throw UsageError(QStringLiteral("a title needs more than blanks"));
    const MeetingListItem meeting = session.select(session.line().operand(0));
    // A title given now would be written over what the recorder keeps of its work.
    if (isInProgress(session, meeting))
        throw CtlError(QStringLiteral("“%1” is being recorded or waits for recovery; rename it afterwards")
                           .arg(visibleText(meeting.title)));
    AppModel& model = session.model();
    if (!model.renameSelectedRun(title))
        throw CtlError(model.status().statusMessage());
    if (session.wantsJson())
        session.printJson(meetingJson(model.library().find(meeting.id).value_or(meeting)));
    return ExitStatus::ok;
}

ExitStatus runSpeaker(Session& session) {
    const QString label = *session.line().operand(1);
    const QString name = session.line().operand(2)->trimmed();
    const MeetingListItem meeting = session.select(session.line().operand(0));
    AppModel& model = session.model();
    const auto& result = model.detail().transcriptResult();
    if (meeting.isDraft() || !result)
        throw CtlError(
            QStringLiteral("“%1” has no transcript yet, and so no speakers").arg(visibleText(meeting.title)));
    checkLabel(*result, label);
    model.speakerReview().setName(label, name);
    if (!model.saveSpeakerMappings())
        throw CtlError(model.status().statusMessage());
    if (session.wantsJson())
        session.printJson(QJsonObject{{QStringLiteral("meeting"), meeting.id},
                                      {QStringLiteral("label"), label},
                                      {QStringLiteral("name"), name.isEmpty() ? QJsonValue() : QJsonValue(name)}});
    return ExitStatus::ok;
}

} // namespace corvane::ctl
