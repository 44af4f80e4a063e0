// corvanectl play
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/RecordingText.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QFileInfo>
#include <QTimer>

#include <chrono>

namespace corvane::ctl {

namespace {

using namespace std::chrono_literals;

// The length of the meeting's audio, once it is known that it can be played from `from`.
double checkedLength(Session& session, const MeetingListItem& meeting, double from) {
    const QString title = visibleText(meeting.title);
    if (!meeting.audioURL || meeting.audioURL->isEmpty())
        throw CtlError(QStringLiteral("“%1” has no audio").arg(title));
    if (!QFileInfo(*meeting.audioURL).isFile())
        throw CtlError(QStringLiteral("the audio of “%1” is missing: %2").arg(title, *meeting.audioURL));
    const double length = session.services().audioFiles->durationSeconds(*meeting.audioURL).value_or(0);
    if (length > 0 && from >= length)
        throw CtlError(QStringLiteral("“%1” is only %2 long").arg(title, durationText(length)));
    return length;
}

} // namespace

ExitStatus runPlay(Session& session) {
    const double from = secondsOfPosition(session.line().value(QStringLiteral("from")).value_or(QStringLiteral("0")));
    const MeetingListItem meeting = session.select(session.line().operand(0));
    const double length = checkedLength(session, meeting, from);
    AppModel& model = session.model();
    Terminal& terminal = session.terminal();
    session.watchSignals();
    model.playAudio(from);
    if (!model.playback().isPlayingAudio())
        throw CtlError(model.status().statusMessage());
    terminal.say(model.status().statusMessage());
    QTimer clock;
    std::optional<QString> failure;
    const auto failed = QObject::connect(&model.playback(), &PlaybackPart::playbackFailed, &clock,
                                         [&failure](const QString& reason) { failure = reason; });
    session.runLoop([&](QEventLoop& loop) {
        QObject::connect(&clock, &QTimer::timeout, &loop, [&] {
            terminal.showLine(QStringLiteral("%1 / %2").arg(durationText(model.playback().currentTimeSeconds()),
                                                            durationText(length)));
        });
        clock.start(200ms);
        QObject::connect(&model.playback(), &PlaybackPart::isPlayingAudioChanged, &loop, &QEventLoop::quit);
    });
    if (failure)
        throw CtlError(model.status().statusMessage());
    const double reached = model.playback().currentTimeSeconds();
    terminal.clearProgress();
    model.stopAudioPlayback();
    if (session.wantsJson())
        session.printJson(QJsonObject{{QStringLiteral("id"), meeting.id},
                                      {QStringLiteral("stoppedAt"), session.isInterrupted() ? reached : length}});
    session.throwIfInterrupted();
    return ExitStatus::ok;
}

} // namespace corvane::ctl
