#include "CorvaneApp/Model/CallDetectionController.h"

namespace corvane {

CallDetectionController::CallDetectionController(Services services, std::function<bool()> canRecord,
                                                 std::chrono::milliseconds promptLifetime)
    : m_services(std::move(services)),
      m_canRecord(std::move(canRecord)),
      m_promptLifetime(promptLifetime),
      m_detector(m_services.frontmostApplication) {
    connect(&m_timer, &QTimer::timeout, this, &CallDetectionController::poll);
    connect(&m_answer, &QFutureWatcherBase::finished, this, &CallDetectionController::take);
}

void CallDetectionController::start() {
    if (m_timer.isActive())
        return;
    m_timer.start(pollInterval);
    poll();
}

bool CallDetectionController::mayPrompt() const {
    return m_canRecord() && !m_promptController;
}

void CallDetectionController::poll() {
    if (m_isAsking || !mayPrompt())
        return;
    m_isAsking = true;
    m_answer.setFuture(m_detector.detectCurrentCall());
}

void CallDetectionController::take() {
    m_isAsking = false;
    const QFuture<std::optional<DetectedCall>> answer = m_answer.future();
    // A recording may have begun since it was asked; then the answer is of no use, later either.
    if (answer.isCanceled() || answer.resultCount() == 0 || !mayPrompt())
        return;
    const std::optional<DetectedCall> call = answer.result();
    if (call && !isDismissed(*call))
        prompt(*call);
}

void CallDetectionController::prompt(const DetectedCall& call) {
    m_promptController = std::make_unique<CallRecordingPromptController>(*m_services.notices, m_promptLifetime);
    m_promptController->show(
        call,
        [this, call] {
            m_promptController.reset();
            Q_EMIT recordWanted(call.recordingTitle(m_services.clock->now()));
        },
        [this, key = call.key](CallRecordingPromptController::Seen seen) { dismiss(key, seen); });
}

// A call that nobody could be asked about, as no notification service runs, is asked about again: silence for half an
// hour is the user's answer, or at least the answer of one who saw the question. Its prompt has had its five seconds
// all the same, so that a desktop without the service is not called upon at every poll.
void CallDetectionController::dismiss(const QString& key, CallRecordingPromptController::Seen seen) {
    const QDateTime now = m_services.clock->now();
    std::erase_if(m_dismissedUntil, [&](const auto& entry) { return entry.second <= now; });
    if (seen == CallRecordingPromptController::Seen::yes)
        m_dismissedUntil[key] = now.addSecs(dismissal.count());
    m_promptController.reset();
}

bool CallDetectionController::isDismissed(const DetectedCall& call) {
    const auto found = m_dismissedUntil.find(call.key);
    if (found == m_dismissedUntil.end())
        return false;
    if (found->second > m_services.clock->now())
        return true;
    m_dismissedUntil.erase(found);
    return false;
}

} // namespace corvane
