// corvanectl delete
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace corvane::ctl {

namespace {

bool isProcessed(const MeetingListItem& meeting) {
    return std::any_of(meeting.runURLs.begin(), meeting.runURLs.end(), [](const QString& run) {
        const auto state = JobStateReader().read(run);
        return state && state->status == jobStatus::running;
    });
}

void checkAtRest(Session& session, const MeetingListItem& meeting) {
    const QString title = visibleText(meeting.title);
    if (isProcessed(meeting))
        throw CtlError(QStringLiteral("“%1” is in processing; with --force it is deleted all the same").arg(title));
    if (isInProgress(session, meeting))
        throw CtlError(
            QStringLiteral("“%1” is being recorded or waits for recovery; with --force it is deleted all the same")
                .arg(title));
}

// The audio that goes with the meeting: only what lies in the data directory is ours to delete.
std::optional<QString> ownAudio(Session& session, const MeetingListItem& meeting) {
    if (!session.line().has(QStringLiteral("audio")) || !meeting.audioURL)
        return std::nullopt;
    const QString audio = QDir::cleanPath(*meeting.audioURL);
    if (!audio.startsWith(session.model().paths().recordings() + QLatin1Char('/'))) {
        session.terminal().complain(QStringLiteral("%1 lies outside the data directory and is kept").arg(audio));
        return std::nullopt;
    }
    for (const MeetingListItem& other : session.model().library().meetings()) {
        if (other.id != meeting.id && other.audioURL && QDir::cleanPath(*other.audioURL) == audio)
            throw CtlError(
                QStringLiteral("the meeting “%1” has the same audio; leave out --audio").arg(visibleText(other.title)));
    }
    return audio;
}

// Whether the user agrees.
bool confirmed(Session& session, const MeetingListItem& meeting, const std::optional<QString>& audio) {
    if (session.line().has(QStringLiteral("yes")))
        return true;
    if (!session.terminal().canAsk())
        throw UsageError(QStringLiteral("without a terminal to ask at, delete needs --yes"));
    return session.terminal().confirm(QStringLiteral("Delete “%1” (%2) with %3 runs%4 for good?")
                                          .arg(meeting.title, meeting.id)
                                          .arg(meeting.runURLs.size())
                                          .arg(audio ? QStringLiteral(" and its audio") : QString()));
}

} // namespace

ExitStatus runDelete(Session& session) {
    const MeetingListItem meeting = session.select(session.line().operand(0));
    if (!session.line().has(QStringLiteral("force")))
        checkAtRest(session, meeting);
    const auto audio = ownAudio(session, meeting);
    if (!confirmed(session, meeting, audio)) {
        session.terminal().say(QStringLiteral("Nothing was deleted."));
        return ExitStatus::failed;
    }
    AppModel& model = session.model();
    if (!model.deleteMeeting(meeting, audio.has_value()))
        throw CtlError(model.status().statusMessage());
    if (model.library().find(meeting.id))
        throw CtlError(QStringLiteral("“%1” could not be deleted wholly").arg(visibleText(meeting.title)));
    if (audio && QFileInfo::exists(*audio))
        throw CtlError(QStringLiteral("the meeting is deleted, but its audio is not: %1").arg(*audio));
    if (session.wantsJson())
        session.printJson(QJsonObject{{QStringLiteral("id"), meeting.id},
                                      {QStringLiteral("title"), meeting.title},
                                      {QStringLiteral("deletedAudio"), audio ? QJsonValue(*audio) : QJsonValue()}});
    return ExitStatus::ok;
}

} // namespace corvane::ctl
