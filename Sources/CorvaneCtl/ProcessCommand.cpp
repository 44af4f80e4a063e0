// corvanectl process
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/RunFollower.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace corvane::ctl {

namespace {

constexpr qint64 logTailBytes = 4096;
constexpr qsizetype logTailLines = 10;

// What the options ask for on top of the meeting's own settings.
ProcessingSettings wantedSettings(const CommandLine& line, ProcessingSettings settings) {
    if (const auto language = line.value(QStringLiteral("language"))) {
        static const QRegularExpression code(QStringLiteral("^[A-Za-z][A-Za-z0-9_-]*$"));
        if (!code.match(*language).hasMatch())
            throw UsageError(QStringLiteral("--language takes a code such as en, not “%1”").arg(*language));
        settings.language = *language;
    }
    if (const auto speakers = line.value(QStringLiteral("speakers")))
        settings = withSpeakers(settings, *speakers);
    return settings;
}

void checkReady(Session& session, const MeetingListItem& meeting) {
    const QString title = visibleText(meeting.title);
    if (isInProgress(session, meeting) && isLive(session, meeting))
        throw CtlError(QStringLiteral("“%1” is being recorded; process it afterwards").arg(title));
    if (isInProgress(session, meeting))
        throw CtlError(
            QStringLiteral("the recording of “%1” was left behind; corvanectl recover finishes it").arg(title));
    if (!meeting.audioURL || meeting.audioURL->isEmpty())
        throw CtlError(QStringLiteral("“%1” has no audio").arg(title));
    if (!QFileInfo(*meeting.audioURL).isFile())
        throw CtlError(QStringLiteral("the audio of “%1” is missing: %2").arg(title, *meeting.audioURL));
    if (session.model().isProcessing() && !session.line().has(QStringLiteral("force")))
        throw CtlError(QStringLiteral("“%1” is in processing already; corvanectl status shows how far it is, and "
                                      "--force starts it once more")
                           .arg(title));
}

QString lastLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const qint64 start = std::max<qint64>(0, file.size() - logTailBytes);
    if (!file.seek(start))
        return {};
    QStringList lines = QString::fromUtf8(file.read(logTailBytes)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (start > 0 && lines.size() > 1)
        lines.removeFirst();
    QString text;
    for (const QString& line : lines.mid(std::max<qsizetype>(0, lines.size() - logTailLines)))
        text += QStringLiteral("\n  ") + visibleText(line);
    return text;
}

QString launch(Session& session, const MeetingListItem& meeting) {
    AppModel& model = session.model();
    const ProcessingSettings settings = wantedSettings(session.line(), model.detail().settings());
    checkReady(session, meeting);
    if (settings != model.detail().settings()) {
        model.detail().setSettings(settings);
        model.persistCurrentMeetingSettings();
    }
    const auto run = session.wait(model.processCurrentAudio());
    if (!run)
        throw CtlError(model.status().statusMessage());
    return *run;
}

void report(Session& session, const MeetingListItem& meeting, const QString& run) {
    const auto& state = session.model().jobs().jobState();
    session.printJson(QJsonObject{
        {QStringLiteral("meeting"), meeting.id},
        {QStringLiteral("run"), run},
        {QStringLiteral("status"), state ? QJsonValue(state->status) : QJsonValue()},
        {QStringLiteral("message"), state ? QJsonValue(state->message) : QJsonValue()},
        {QStringLiteral("progress"), state ? QJsonValue(state->progress) : QJsonValue()},
    });
}

RunFollower::Ending follow(Session& session, const QString& run) {
    RunFollower follower(session.model(), session.terminal(), run);
    session.runLoop(
        [&](QEventLoop& loop) { QObject::connect(&follower, &RunFollower::ended, &loop, &QEventLoop::quit); });
    if (!follower.ending())
        session.throwIfInterrupted();
    return follower.ending().value_or(RunFollower::Ending::gone);
}

ExitStatus judge(Session& session, RunFollower::Ending ending, const QString& run) {
    const auto& jobs = session.model().jobs();
    Terminal& terminal = session.terminal();
    if (ending == RunFollower::Ending::gone) {
        terminal.complain(QStringLiteral("the run directory was deleted while the worker ran: %1").arg(run));
        return ExitStatus::failed;
    }
    if (ending == RunFollower::Ending::silent) {
        const QString log = runFiles::in(run, runFiles::standardErrorLog);
        const auto& last = jobs.lastLaunch();
        terminal.complain(QStringLiteral("the worker ended with status %1 and without a last word; see %2%3")
                              .arg(last ? last->process->terminationStatus() : 0)
                              .arg(log, lastLines(log)));
        return ExitStatus::failed;
    }
    const WorkerJobState& state = *jobs.jobState();
    if (state.status == jobStatus::completed) {
        const bool saysMore = state.message.compare(state.status, Qt::CaseInsensitive) != 0;
        terminal.say(saysMore ? QStringLiteral("Completed: ") + state.message : QStringLiteral("Completed."));
        return ExitStatus::ok;
    }
    terminal.complain(QStringLiteral("processing ended as “%1”: %2").arg(state.status, state.message));
    return ExitStatus::failed;
}

} // namespace

ExitStatus runProcess(Session& session) {
    const MeetingListItem meeting = session.select(session.line().operand(0));
    const QString run = launch(session, meeting);
    if (!session.wantsJson())
        session.terminal().print(session.terminal().isOutputTerminal() ? visibleText(run) + QLatin1Char('\n')
                                                                       : run + QLatin1Char('\n'));
    if (!session.line().has(QStringLiteral("wait"))) {
        if (session.wantsJson())
            report(session, meeting, run);
        return ExitStatus::ok;
    }
    RunFollower::Ending ending{};
    try {
        ending = follow(session, run);
    } catch (const Interrupted&) {
        session.terminal().say(QStringLiteral("Processing goes on; corvanectl status shows how far it is."));
        if (session.wantsJson())
            report(session, meeting, run);
        throw;
    }
    if (session.wantsJson())
        report(session, meeting, run);
    return judge(session, ending, run);
}

} // namespace corvane::ctl
