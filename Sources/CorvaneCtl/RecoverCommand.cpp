// corvanectl recover
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

namespace {

MeetingListItem named(Session& session, const QString& words) {
    MeetingListItem meeting = session.meeting(words);
    const QString title = visibleText(meeting.title);
    if (!isInProgress(session, meeting))
        throw CtlError(QStringLiteral("“%1” is no recording that was left behind").arg(title));
    if (isLive(session, meeting))
        throw CtlError(QStringLiteral("“%1” is being recorded by another process; end it there").arg(title));
    if (!hasSound(session, meeting))
        throw CtlError(QStringLiteral("nothing was recorded of “%1”").arg(title));
    return meeting;
}

// Nothing if none was left behind.
std::optional<MeetingListItem> only(Session& session) {
    const UnfinishedRecordings unfinished = unfinishedRecordings(session);
    if (unfinished.left.size() > 1) {
        QString text = QStringLiteral("%1 recordings were left behind; name one:").arg(unfinished.left.size());
        for (const MeetingListItem& meeting : unfinished.left)
            text += QStringLiteral("\n  %1  %2").arg(visibleText(meeting.id), visibleText(meeting.title));
        throw CtlError(text, ExitStatus::noSuchMeeting);
    }
    if (unfinished.left.empty())
        return std::nullopt;
    return unfinished.left.front();
}

} // namespace

ExitStatus runRecover(Session& session) {
    const auto words = session.line().operand(0);
    const auto meeting = words ? std::optional(named(session, *words)) : only(session);
    if (!meeting) {
        session.terminal().say(QStringLiteral("No recording was left behind."));
        if (session.wantsJson())
            session.printJson(QJsonObject{{QStringLiteral("id"), QJsonValue()}});
        return ExitStatus::ok;
    }
    session.watchSignals();
    session.model().selectMeeting(*meeting);
    return finishRecording(session, meeting->id);
}

} // namespace corvane::ctl
