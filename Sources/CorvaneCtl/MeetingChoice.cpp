#include "CorvaneCtl/MeetingChoice.h"

#include "CorvaneCtl/Choice.h"
#include "CorvaneCtl/CtlError.h"

namespace corvane::ctl {

namespace {

std::vector<Named> named(const std::vector<MeetingListItem>& meetings) {
    std::vector<Named> all;
    all.reserve(meetings.size());
    for (const MeetingListItem& meeting : meetings)
        all.push_back({meeting.id, meeting.title});
    return all;
}

} // namespace

const MeetingListItem& chooseMeeting(const std::vector<MeetingListItem>& meetings, const QString& words) {
    if (meetings.empty())
        throw CtlError(QStringLiteral("there is no meeting yet; corvanectl record or corvanectl import FILE makes one"),
                       ExitStatus::noSuchMeeting);
    if (words == QLatin1String("latest"))
        return meetings.front();
    static const ChoiceWords refusal{
        QStringLiteral("meetings"), QStringLiteral("an empty text names no meeting"),
        QStringLiteral("no meeting has the id or the title “%1”; corvanectl meetings lists them")};
    return meetings[choose(named(meetings), words, refusal)];
}

std::vector<QString> shortIDs(const std::vector<MeetingListItem>& meetings) {
    return shortIDs(named(meetings));
}

} // namespace corvane::ctl
