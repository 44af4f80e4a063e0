#include "CorvaneCtl/RunFollower.h"

#include <QFileInfo>

#include <chrono>

namespace corvane::ctl {

using namespace std::chrono_literals;

RunFollower::RunFollower(AppModel& model, Terminal& terminal, QString run)
    : m_model(model), m_terminal(terminal), m_run(std::move(run)) {
    m_sinceLaunch.start();
    connect(&m_timer, &QTimer::timeout, this, &RunFollower::tick);
    m_timer.start(200ms);
}

void RunFollower::tick() {
    m_ending = look();
    if (!m_ending) {
        show();
        return;
    }
    m_timer.stop();
    m_terminal.clearProgress();
    Q_EMIT ended();
}

std::optional<RunFollower::Ending> RunFollower::look() {
    const auto& jobs = m_model.jobs();
    const auto isTold = [&jobs] { return jobs.jobState() && !jobs.isProcessing(); };
    if (isTold())
        return Ending::told;
    if (!QFileInfo(m_run).isDir())
        return Ending::gone;
    const auto& launch = jobs.lastLaunch();
    if (launch && launch->runDirectory == m_run && launch->process->isRunning())
        return std::nullopt;
    // What it wrote before it ended may be younger than what was read last.
    m_model.refreshRun();
    if (isTold())
        return Ending::told;
    return Ending::silent;
}

void RunFollower::show() {
    const auto& state = m_model.jobs().jobState();
    const auto& elapsed = m_model.jobs().runProgress().elapsed;
    m_terminal.showProgress(state ? state->progress : 0,
                            elapsed.value_or(static_cast<double>(m_sinceLaunch.elapsed()) / 1000.0),
                            state ? state->message : QString());
}

} // namespace corvane::ctl
