#include "CorvaneCtl/MeetingChoice.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>
#include <numeric>

namespace corvane::ctl {

namespace {

constexpr qsizetype shortestID = 8;
constexpr std::size_t mostCandidates = 10;

[[noreturn]] void refuse(const QString& text) {
    throw CtlError(text, ExitStatus::noSuchMeeting);
}

qsizetype commonLength(const QString& a, const QString& b) {
    const auto end = std::min(a.size(), b.size());
    return std::mismatch(a.begin(), a.begin() + end, b.begin()).first - a.begin();
}

[[noreturn]] void refuseSeveral(const std::vector<MeetingListItem>& meetings,
                                const std::vector<const MeetingListItem*>& fitting, const QString& words) {
    const std::vector<QString> ids = shortIDs(meetings);
    QString text = QStringLiteral("“%1” fits %2 meetings:").arg(words).arg(fitting.size());
    for (std::size_t i = 0; i < std::min(fitting.size(), mostCandidates); ++i) {
        const auto index = static_cast<std::size_t>(fitting[i] - meetings.data());
        text += QStringLiteral("\n  %1  %2").arg(visibleText(ids[index]), visibleText(fitting[i]->title));
    }
    if (fitting.size() > mostCandidates)
        text += QStringLiteral("\n  and %1 more").arg(fitting.size() - mostCandidates);
    refuse(text);
}

} // namespace

const MeetingListItem& chooseMeeting(const std::vector<MeetingListItem>& meetings, const QString& words) {
    if (meetings.empty())
        refuse(QStringLiteral("there is no meeting yet; corvanectl record or corvanectl import FILE makes one"));
    if (words == QLatin1String("latest"))
        return meetings.front();
    if (words.trimmed().isEmpty())
        refuse(QStringLiteral("an empty text names no meeting"));
    std::vector<const MeetingListItem*> fitting;
    for (const MeetingListItem& meeting : meetings) {
        if (meeting.id.compare(words, Qt::CaseInsensitive) == 0)
            return meeting;
        if (meeting.title == words || meeting.id.startsWith(words, Qt::CaseInsensitive))
            fitting.push_back(&meeting);
    }
    if (fitting.empty())
        refuse(QStringLiteral("no meeting has the id or the title “%1”; corvanectl meetings lists them").arg(words));
    if (fitting.size() > 1)
        refuseSeveral(meetings, fitting, words);
    return *fitting.front();
}

std::vector<QString> shortIDs(const std::vector<MeetingListItem>& meetings) {
    std::vector<QString> folded;
    for (const MeetingListItem& meeting : meetings) {
        folded.push_back(meeting.id);
        for (QChar& character : folded.back())
            character = character.toCaseFolded();
    }
    // In sorted order the ids that share the longest beginning are neighbours.
    std::vector<std::size_t> order(meetings.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return folded[a] < folded[b]; });
    std::vector<QString> result(meetings.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const QString& id = meetings[order[i]].id;
        qsizetype shared = 0;
        if (i > 0)
            shared = commonLength(folded[order[i]], folded[order[i - 1]]);
        if (i + 1 < order.size())
            shared = std::max(shared, commonLength(folded[order[i]], folded[order[i + 1]]));
        qsizetype length = std::min(id.size(), std::max(shortestID, shared + 1));
        if (length < id.size() && id[length].isLowSurrogate())
            ++length;
        result[order[i]] = id.left(length);
    }
    return result;
}

} // namespace corvane::ctl
