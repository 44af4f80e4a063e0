// corvanectl meetings, corvanectl show
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/MeetingChoice.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/RecordingText.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QFileInfo>

namespace corvane::ctl {

namespace {

QString localTime(FileTime time) {
    const auto moment = timeOf(time);
    return moment ? moment->toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QStringLiteral("?");
}

QString meetingsTable(const std::vector<MeetingListItem>& meetings) {
    const std::vector<QString> ids = shortIDs(meetings);
    std::vector<QStringList> rows{
        {QStringLiteral("ID"), QStringLiteral("TIME"), QStringLiteral("STATUS"), QStringLiteral("TITLE")}};
    for (std::size_t i = 0; i < meetings.size(); ++i)
        rows.push_back({visibleText(ids[i]), localTime(meetings[i].modifiedAt), visibleText(meetings[i].status),
                        visibleText(meetings[i].title)});
    return tableText(rows);
}

// All that is known of the meeting that the model shows.
struct Details {
    MeetingListItem meeting;
    std::optional<double> audioSeconds;
    ProcessingSettings settings;
    std::vector<std::pair<QString, std::optional<WorkerJobState>>> runs; // directory and state, newest first
    std::optional<TranscriptResult> result;
    QString meetingDirectory; // "" if there is none
    std::optional<CaptureReport> capture;
};

Details detailsOf(Session& session) {
    AppModel& model = session.model();
    Details details;
    details.meeting = session.select(session.line().operand(0));
    if (details.meeting.audioURL)
        details.audioSeconds = session.services().audioFiles->durationSeconds(*details.meeting.audioURL);
    details.settings = model.detail().settings();
    for (const QString& run : details.meeting.runURLs)
        details.runs.emplace_back(run, JobStateReader().read(run));
    if (!details.meeting.isDraft())
        details.result = model.detail().transcriptResult();
    const QString directory = model.paths().meeting(details.meeting.id);
    if (!details.meeting.id.contains(QLatin1Char('/')) && QFileInfo(directory).isDir())
        details.meetingDirectory = directory;
    if (!details.meetingDirectory.isEmpty())
        details.capture = readCaptureReport(details.meetingDirectory);
    return details;
}

QJsonObject json(const Details& details) {
    QJsonObject object = meetingJson(details.meeting);
    object.insert(QStringLiteral("audioSeconds"),
                  details.audioSeconds ? QJsonValue(*details.audioSeconds) : QJsonValue());
    object.insert(QStringLiteral("settings"), settingsJson(details.settings));
    QJsonArray runs;
    for (const auto& [directory, state] : details.runs)
        runs.append(QJsonObject{
            {QStringLiteral("directory"), directory},
            {QStringLiteral("status"), state ? QJsonValue(state->status) : QJsonValue()},
            {QStringLiteral("message"), state ? QJsonValue(state->message) : QJsonValue()},
            {QStringLiteral("progress"), state ? QJsonValue(state->progress) : QJsonValue()},
        });
    object.insert(QStringLiteral("runs"), runs);
    object.insert(QStringLiteral("speakers"), details.result ? speakersJson(*details.result) : QJsonArray());
    object.insert(QStringLiteral("hasTranscript"), details.result.has_value());
    object.insert(QStringLiteral("capture"),
                  details.capture ? QJsonValue(captureJson(*details.capture)) : QJsonValue());
    object.insert(QStringLiteral("directory"),
                  details.meetingDirectory.isEmpty() ? QJsonValue() : QJsonValue(details.meetingDirectory));
    return object;
}

QString audioText(const Details& details) {
    if (!details.meeting.audioURL)
        return QStringLiteral("none");
    QString text = visibleText(*details.meeting.audioURL);
    if (details.audioSeconds)
        text += QStringLiteral(" (%1)").arg(durationText(*details.audioSeconds));
    else if (!QFileInfo::exists(*details.meeting.audioURL))
        text += QStringLiteral(" (missing)");
    return text;
}

std::vector<QStringList> mainRows(const Details& details) {
    const MeetingListItem& meeting = details.meeting;
    return {{QStringLiteral("Title"), visibleText(meeting.title)},
            {QStringLiteral("Id"), visibleText(meeting.id)},
            {QStringLiteral("Status"), visibleText(meeting.status)},
            {QStringLiteral("Time"), localTime(meeting.modifiedAt)},
            {QStringLiteral("Audio"), audioText(details)},
            {QStringLiteral("Language"), visibleText(details.settings.language)},
            {QStringLiteral("Speakers"), speakersText(details.settings)},
            {QStringLiteral("Directory"),
             details.meetingDirectory.isEmpty() ? QStringLiteral("none") : visibleText(details.meetingDirectory)},
            {QStringLiteral("Transcript"),
             details.result ? visibleText(runFiles::in(meeting.latestRun, runFiles::result)) : QStringLiteral("none")}};
}

QString text(const Details& details) {
    QString result = tableText(mainRows(details));
    if (details.capture)
        result += QStringLiteral("Capture\n") + captureText(*details.capture);
    if (!details.runs.empty()) {
        std::vector<QStringList> rows;
        for (const auto& [directory, state] : details.runs)
            rows.push_back({QStringLiteral("  ") + visibleText(state ? state->status : QStringLiteral("pending")),
                            visibleText(directory), visibleText(state ? state->message : QString())});
        result += QStringLiteral("Runs, newest first\n") + tableText(rows);
    }
    if (details.result && !details.result->speakers.empty()) {
        std::vector<QStringList> rows;
        for (const TranscriptSpeaker& speaker : details.result->speakers)
            rows.push_back({QStringLiteral("  ") + visibleText(speaker.speaker), durationText(speaker.duration),
                            visibleText(speakerName(*details.result, speaker.speaker).value_or(QString()))});
        result += QStringLiteral("Speakers, with the time each spoke\n") + tableText(rows);
    }
    return result;
}

} // namespace

ExitStatus runMeetings(Session& session) {
    const std::vector<MeetingListItem>& meetings = session.model().library().meetings();
    if (session.wantsJson())
        session.printJson(encodeArray(meetings, meetingJson));
    else if (meetings.empty())
        session.terminal().say(
            QStringLiteral("No meetings yet; corvanectl record or corvanectl import FILE makes one."));
    else
        session.terminal().print(meetingsTable(meetings));
    return ExitStatus::ok;
}

ExitStatus runShow(Session& session) {
    const Details details = detailsOf(session);
    if (session.wantsJson())
        session.printJson(json(details));
    else
        session.terminal().print(text(details));
    return ExitStatus::ok;
}

} // namespace corvane::ctl
