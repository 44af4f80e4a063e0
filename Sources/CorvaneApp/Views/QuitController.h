// The way out: a recording is stopped and finished before the application ends, with a question if it is the user who
// leaves, and as far as time allows if the session ends. Owned by the application, on the main thread.
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace corvane {

class AppModel;

class QuitController final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY changed)
    Q_PROPERTY(bool isFinishing READ isFinishing NOTIFY changed)
    Q_PROPERTY(bool hasFailed READ hasFailed NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)

public:
    // Borrows the model, which outlives it.
    explicit QuitController(AppModel& model, QObject* parent = nullptr);

    // A recording runs, and the user has not said yet whether to stop it.
    [[nodiscard]] bool isAsking() const { return m_step == Step::asking; }
    [[nodiscard]] bool isFinishing() const { return m_step == Step::finishing; }
    // The recording could not be finished; what was recorded is kept.
    [[nodiscard]] bool hasFailed() const { return m_step == Step::failed; }
    [[nodiscard]] double progress() const; // of the finishing, from 0 to 1

    Q_INVOKABLE void requestQuit();
    Q_INVOKABLE void stopAndQuit();
    Q_INVOKABLE void quitAnyway();
    // Goes on as before. A recording that was stopped stays stopped.
    Q_INVOKABLE void cancel();

    // The session, the machine or whoever sent a signal wants the process to end: the recorders are stopped and what
    // they wrote is on the disk when this returns. Joining may take so long; what is not joined by then is recovered at
    // the next start. Asked a second time, it waits no longer.
    void endSoon(std::chrono::milliseconds patience);

Q_SIGNALS:
    void changed();
    // Nothing is left to wait for. Comes once.
    void quitWanted();

private:
    enum class Step { none, asking, finishing, failed, ended };

    [[nodiscard]] bool isRecordingActive() const;
    [[nodiscard]] bool isJoining() const;
    void enter(Step step);
    void finish();
    void end();

    AppModel& m_model;
    Step m_step = Step::none;
    bool m_mustEnd = false; // nobody can be asked any more
    QTimer m_patience;
};

} // namespace corvane
