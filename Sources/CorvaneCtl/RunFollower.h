// Follows the run that was launched last in this process to its end, through the model's fields and whether its process
// still lives. Owned by the command that waits; main thread.
#pragma once

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCtl/Terminal.h"

#include <QElapsedTimer>
#include <QTimer>

namespace corvane::ctl {

class RunFollower final : public QObject {
    Q_OBJECT

public:
    enum class Ending {
        told,   // the job state has another word than "running"
        silent, // the process has ended and left the state at "running", or none at all
        gone,   // the run directory was deleted
    };

    // `run` is what the model launched and shows.
    RunFollower(AppModel& model, Terminal& terminal, QString run);

    [[nodiscard]] std::optional<Ending> ending() const { return m_ending; }

Q_SIGNALS:
    void ended();

private:
    void tick();
    [[nodiscard]] std::optional<Ending> look();
    void show();

    AppModel& m_model;
    Terminal& m_terminal;
    QString m_run;
    QTimer m_timer;
    QElapsedTimer m_sinceLaunch;
    std::optional<Ending> m_ending;
};

} // namespace corvane::ctl
