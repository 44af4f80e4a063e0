// corvanectl record
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/RecordingText.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/TerminalKeys.h"
#include "CorvaneCtl/Text.h"

#include <QTimer>

#include <chrono>

namespace corvane::ctl {

namespace {

// Begins, and gives the meeting's id.
QString start(Session& session) {
    AppModel& model = session.model();
    if (session.line().has(QStringLiteral("no-system")))
        model.setSystemAudioCaptureMode(SystemAudioCaptureMode::off);
    model.startRecording(session.line().value(QStringLiteral("title")));
    const RecordingPart& recording = model.recording();
    if (recording.recordingState().kind != RecordingState::Kind::recording || !recording.currentRecordingMeetingID())
        throw CtlError(model.status().statusMessage());
    return *recording.currentRecordingMeetingID();
}

// Shows a recording while it runs, and obeys the keys.
class RecordingView final : public QObject {
public:
    RecordingView(AppModel& model, Terminal& terminal, QEventLoop& loop) : m_model(model), m_terminal(terminal) {
        connect(&model.recording(), &RecordingPart::captureWarned, this,
                [this](const QString& sentence) { m_terminal.say(sentence); });
        connect(&model.recording(), &RecordingPart::tracksChanged, this, &RecordingView::show);
        connect(&model.recording(), &RecordingPart::recordingElapsedChanged, this, &RecordingView::show);
        if (!terminal.canRedraw())
            return;
        m_keys.emplace();
        connect(&*m_keys, &TerminalKeys::typed, this, [this, &loop](char key) {
            if (key == 'q')
                loop.quit();
            else if (key == 'p')
                togglePause();
        });
    }

private:
    [[nodiscard]] bool isPaused() const {
        return m_model.recording().recordingState().kind == RecordingState::Kind::paused;
    }

    void togglePause() {
        const bool wasPaused = isPaused();
        if (wasPaused)
            m_model.resumeRecording();
        else
            m_model.pauseRecording();
        if (isPaused() == wasPaused)
            m_terminal.complain(m_model.status().statusMessage());
        show();
    }

    void show() {
        const RecordingPart& recording = m_model.recording();
        m_terminal.showLine(
            isPaused() ? QStringLiteral("Paused  ") + durationText(recording.recordingElapsed())
                       : meterText(QStringLiteral("Recording"), recording.recordingElapsed(), recording.tracks()));
    }

    AppModel& m_model;
    Terminal& m_terminal;
    std::optional<TerminalKeys> m_keys;
};

void announce(Session& session, const QString& meetingID) {
    AppModel& model = session.model();
    const QString keys = session.terminal().canRedraw() ? QStringLiteral("; p pauses, q or Ctrl-C ends it") : QString();
    session.terminal().say(
        QStringLiteral("Recording “%1” as %2%3").arg(visibleText(model.detail().selectedTitle()), meetingID, keys));
    // What the model has to say of a start that went less than well, such as a recording without system audio.
    if (model.status().statusMessage() != QLatin1String("Recording"))
        session.terminal().complain(model.status().statusMessage());
}

// Until a signal, a key or the end of the time.
void record(Session& session, std::optional<qint64> seconds) {
    std::unique_ptr<RecordingView> view;
    QTimer end;
    end.setSingleShot(true);
    end.setTimerType(Qt::PreciseTimer);
    session.runLoop([&](QEventLoop& loop) {
        view = std::make_unique<RecordingView>(session.model(), session.terminal(), loop);
        QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
        if (seconds)
            end.start(std::chrono::milliseconds(std::chrono::seconds(*seconds)));
    });
    session.terminal().clearProgress();
}

} // namespace

ExitStatus runRecord(Session& session) {
    std::optional<qint64> seconds;
    if (const auto duration = session.line().value(QStringLiteral("for")))
        seconds = secondsOfDuration(*duration);
    // Before the recording starts, so that there is no moment in which a signal would cut it off.
    session.watchSignals();
    const QString meetingID = start(session);
    announce(session, meetingID);
    record(session, seconds);
    session.forgetInterruption();
    return finishRecording(session, meetingID);
}

} // namespace corvane::ctl
