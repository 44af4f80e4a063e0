// corvanectl rename
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

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

} // namespace corvane::ctl
