#include "CorvaneCtl/FinishRecording.h"

#include "CorvaneCore/Recording/MeetingChunks.h"
#include "CorvaneCore/Recording/RecordingLock.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/RecordingText.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QElapsedTimer>
#include <QScopeGuard>

namespace corvane::ctl {

namespace {

constexpr qint64 silentMilliseconds = 500; // what is joined sooner needs no progress bar
constexpr qint64 redrawMilliseconds = 100;

struct Finished {
    QString meetingID;
    QString title;
    QString audio;
    std::optional<double> audioSeconds;
    std::optional<CaptureReport> capture;
    std::optional<QString> run;
};

QString join(Session& session, const QString& meetingID) {
    AppModel& model = session.model();
    Terminal& terminal = session.terminal();
    QElapsedTimer clock;
    clock.start();
    QElapsedTimer sinceShown;
    sinceShown.start();
    const auto shown = QObject::connect(&model.recording(), &RecordingPart::finishingProgressChanged, &model, [&] {
        const auto& fraction = model.recording().finishingProgress();
        // Each block that is written tells its progress, thousands of them a second.
        if (!fraction || !clock.hasExpired(silentMilliseconds) || !sinceShown.hasExpired(redrawMilliseconds))
            return;
        sinceShown.start();
        terminal.showProgress(*fraction, static_cast<double>(clock.elapsed()) / 1000.0,
                              QStringLiteral("Joining and mixing"));
    });
    const auto disconnected = qScopeGuard([&shown] { QObject::disconnect(shown); });
    const auto file = session.wait(model.stopRecording(AppModel::AfterStop::leave), [&] {
        terminal.say(QStringLiteral("The recording is safe and is being finished. Another interruption ends "
                                    "corvanectl; then corvanectl recover %1 finishes it.")
                         .arg(meetingID));
    });
    terminal.clearProgress();
    if (!file)
        throw CtlError(
            QStringLiteral("%1\nWhat was recorded is kept in %2. Once the cause is mended, or a chunk that cannot be "
                           "read is moved away, corvanectl recover %3 finishes it.")
                .arg(model.status().statusMessage(), model.paths().meeting(meetingID), meetingID));
    return *file;
}

// The lines that a script reads: the id and the file, and the run as soon as there is one.
void printLine(Session& session, const QString& line) {
    if (!session.wantsJson())
        session.terminal().print((session.terminal().isOutputTerminal() ? visibleText(line) : line) +
                                 QLatin1Char('\n'));
}

void tellCapture(Session& session, const Finished& finished) {
    Terminal& terminal = session.terminal();
    terminal.say(QStringLiteral("Recorded “%1”, %2")
                     .arg(visibleText(finished.title),
                          finished.audioSeconds ? durationText(*finished.audioSeconds) : QStringLiteral("?")));
    if (finished.capture)
        terminal.say(captureText(*finished.capture).chopped(1));
}

void printReport(Session& session, const Finished& finished) {
    if (!session.wantsJson())
        return;
    session.printJson(QJsonObject{
        {QStringLiteral("id"), finished.meetingID},
        {QStringLiteral("title"), finished.title},
        {QStringLiteral("audio"), finished.audio},
        {QStringLiteral("audioSeconds"), finished.audioSeconds ? QJsonValue(*finished.audioSeconds) : QJsonValue()},
        {QStringLiteral("run"), textOrNull(finished.run)},
        {QStringLiteral("capture"), finished.capture ? QJsonValue(captureJson(*finished.capture)) : QJsonValue()},
    });
}

bool hasForgottenChunks(Session& session, const MeetingListItem& meeting) {
    const QString directory = session.model().paths().meeting(meeting.id);
    const auto draft = readMeetingDraft(directory);
    return draft && forgottenChunksDirectory(*draft, directory, *session.services().files);
}

void process(Session& session, Finished& finished) {
    AppModel& model = session.model();
    finished.run = session.wait(model.processCurrentAudio());
    if (!finished.run)
        throw CtlError(QStringLiteral("the recording is finished, but not in processing: ") +
                       model.status().statusMessage());
    printLine(session, *finished.run);
}

} // namespace

bool isInProgress(Session& session, const MeetingListItem& meeting) {
    return meeting.isDraft() && (meeting.status == recordingStatus::recording ||
                                 meeting.status == recordingStatus::paused || hasForgottenChunks(session, meeting));
}

bool isLive(Session& session, const MeetingListItem& meeting) {
    return RecordingLock::isHeld(session.model().paths().meeting(meeting.id));
}

bool hasSound(Session& session, const MeetingListItem& meeting) {
    const auto draft = readMeetingDraft(session.model().paths().meeting(meeting.id));
    return draft && (hasForgottenChunks(session, meeting) || !chunkURLs(*draft, *session.services().files).empty());
}

UnfinishedRecordings unfinishedRecordings(Session& session) {
    UnfinishedRecordings unfinished;
    for (const MeetingListItem& meeting : session.model().library().meetings()) {
        if (!isInProgress(session, meeting))
            continue;
        if (isLive(session, meeting))
            unfinished.live.push_back(meeting);
        else if (hasSound(session, meeting))
            unfinished.left.push_back(meeting);
    }
    return unfinished;
}

ExitStatus finishRecording(Session& session, const QString& meetingID) {
    AppModel& model = session.model();
    Finished finished;
    finished.meetingID = meetingID;
    finished.audio = join(session, meetingID);
    session.forgetInterruption(); // it was answered while it joined
    if (const auto meeting = model.library().find(meetingID))
        finished.title = meeting->title;
    finished.audioSeconds = session.services().audioFiles->durationSeconds(finished.audio);
    finished.capture = readCaptureReport(model.paths().meeting(meetingID));
    tellCapture(session, finished);
    printLine(session, meetingID + QStringLiteral("  ") + finished.audio);
    try {
        if (!session.line().has(QStringLiteral("no-process")))
            process(session, finished);
    } catch (const Error&) {
        printReport(session, finished);
        throw;
    }
    printReport(session, finished);
    return ExitStatus::ok;
}

} // namespace corvane::ctl
