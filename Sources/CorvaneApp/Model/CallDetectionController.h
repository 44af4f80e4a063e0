// Looks every two seconds whether the user is in a call, and asks whether to record it. It never stops by itself and no
// setting turns it off. Owned by AppModel; main thread.
#pragma once

#include "CorvaneCore/Calls/ActiveCallDetector.h"
#include "CorvaneCore/Calls/CallRecordingPromptController.h"
#include "CorvaneCore/Interfaces/Clock.h"

#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace corvane {

class CallDetectionController final : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds pollInterval{2000};
    static constexpr std::chrono::seconds dismissal{1800};

    struct Services {
        std::shared_ptr<FrontmostApplicationReader> frontmostApplication;
        std::shared_ptr<CallNotices> notices;
        std::shared_ptr<const Clock> clock;
    };

    // `canRecord`: whether a recording could begin now. While none can, nothing is looked at.
    CallDetectionController(Services services, std::function<bool()> canRecord,
                            std::chrono::milliseconds promptLifetime = CallRecordingPromptController::defaultLifetime);

    // Polls at once and then every two seconds. Safe to repeat.
    void start();
    // Asks for what is in front, unless that is being asked or a prompt is on screen.
    void poll();

Q_SIGNALS:
    void recordWanted(const QString& suggestedTitle);

private:
    [[nodiscard]] bool mayPrompt() const;
    void take();
    void prompt(const DetectedCall& call);
    void dismiss(const QString& key, CallRecordingPromptController::Seen seen);
    [[nodiscard]] bool isDismissed(const DetectedCall& call);

    Services m_services;
    std::function<bool()> m_canRecord;
    std::chrono::milliseconds m_promptLifetime;
    ActiveCallDetector m_detector;
    QTimer m_timer;
    bool m_isAsking = false;
    QFutureWatcher<std::optional<DetectedCall>> m_answer;
    std::unique_ptr<CallRecordingPromptController> m_promptController; // while a prompt is on screen
    std::map<QString, QDateTime> m_dismissedUntil;                     // by key of the call
};

} // namespace corvane
