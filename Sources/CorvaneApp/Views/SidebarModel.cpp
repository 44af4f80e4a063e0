#include "CorvaneApp/Views/SidebarModel.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Library/StatusText.h"

#include <algorithm>

namespace corvane {

namespace {

QDateTime timeOf(FileTime time) {
    constexpr FileTime nanosecondsInMillisecond = 1'000'000;
    if (time == distantPast)
        return QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
    return QDateTime::fromMSecsSinceEpoch(time / nanosecondsInMillisecond, Qt::UTC);
}

} // namespace

QString stableRelativeTime(const QDateTime& time, const QDateTime& now) {
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    const qint64 seconds = time.secsTo(now);
    if (seconds < minute)
        return PanelText::tr("just now");
    if (seconds < hour)
        return PanelText::tr("%1m ago").arg(seconds / minute);
    if (seconds < day)
        return PanelText::tr("%1h ago").arg(seconds / hour);
    return PanelText::tr("%1d ago").arg(seconds / day);
}

SidebarModel::SidebarModel(AppModel& model, const Clock& clock, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_clock(clock),
      m_meetings([](const SidebarRow& row) { return row.meetingID; }) {}

void SidebarModel::refresh() {
    m_meetings.update(makeRows());
    if (auto footer = makeFooter(); footer != m_footer) {
        m_footer = std::move(footer);
        Q_EMIT footerButtonsChanged();
    }
}

std::vector<SidebarRow> SidebarModel::makeRows() const {
    const QDateTime now = m_clock.now();
    const auto& selected = m_model.library().selectedSidebarItem();
    std::vector<SidebarRow> rows;
    rows.reserve(m_model.library().meetings().size());
    for (const MeetingListItem& meeting : m_model.library().meetings()) {
        SidebarRow row;
        row.meetingID = meeting.id;
        row.title = meeting.title;
        row.status = statusText(meeting.status);
        row.relativeTime = stableRelativeTime(timeOf(meeting.modifiedAt), now);
        row.isSelected = selected == SidebarItem::meeting(meeting.id);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SidebarFooterButton> SidebarModel::makeFooter() const {
    const auto& selected = m_model.library().selectedSidebarItem();
    const auto button = [&](const QString& title, const char* icon, SidebarItem::Kind kind) {
        SidebarFooterButton made;
        made.title = title;
        made.iconName = QString::fromLatin1(icon);
        made.isSelected = selected && selected->kind == kind;
        made.item = static_cast<int>(kind);
        return made;
    };
    auto settings = button(PanelText::tr("Settings"), "gearshape", SidebarItem::Kind::settings);
    if (m_model.updates().updateCheckState().kind == UpdateCheckState::Kind::available)
        settings.badgeText = PanelText::tr("Update available");
    return {button(PanelText::tr("Speaker Profiles"), "person.wave.2", SidebarItem::Kind::speakerProfiles), settings};
}

void SidebarModel::reload() {
    m_model.reloadMeetings();
}

int SidebarModel::selectedRow() const {
    const auto& rows = m_meetings.rows();
    const auto found = std::find_if(rows.begin(), rows.end(), [](const SidebarRow& row) { return row.isSelected; });
    return found == rows.end() ? -1 : static_cast<int>(std::distance(rows.begin(), found));
}

void SidebarModel::selectMeeting(const QString& meetingID) {
    if (m_model.library().find(meetingID))
        m_model.selectSidebarItem(SidebarItem::meeting(meetingID));
}

void SidebarModel::selectNoMeeting() {
    m_model.selectSidebarItem(std::nullopt);
}

void SidebarModel::selectFooterItem(int item) {
    SidebarItem chosen = SidebarItem::settings();
    if (static_cast<SidebarItem::Kind>(item) == SidebarItem::Kind::speakerProfiles)
        chosen = SidebarItem::speakerProfiles();
    m_model.selectSidebarItem(chosen);
}

void SidebarModel::showInFileManager(const QString& meetingID) {
    if (const auto meeting = m_model.library().find(meetingID))
        m_model.openMeetingFolder(*meeting);
}

void SidebarModel::deleteMeeting(const QString& meetingID) {
    setPendingDeletion(meetingID);
}

void SidebarModel::confirmDeletion() {
    const auto meeting = m_pendingDeletion ? m_model.library().find(*m_pendingDeletion) : std::nullopt;
    setPendingDeletion(std::nullopt);
    if (meeting)
        m_model.deleteMeeting(*meeting, true);
}

void SidebarModel::cancelDeletion() {
    setPendingDeletion(std::nullopt);
}

void SidebarModel::setPendingDeletion(std::optional<QString> meetingID) {
    if (m_pendingDeletion == meetingID)
        return;
    const bool wasAsking = isAskingDeletion();
    m_pendingDeletion = std::move(meetingID);
    if (wasAsking != isAskingDeletion())
        Q_EMIT isAskingDeletionChanged();
}

} // namespace corvane
