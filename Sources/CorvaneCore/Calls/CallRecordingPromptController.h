// One question whether to record a call, from its notice to what the user wants; unanswered for five seconds it goes by
// itself. Owned by CallDetectionController, one for each question; main thread.
#pragma once

#include "CorvaneCore/Calls/DetectedCall.h"
#include "CorvaneCore/Interfaces/CallNotice.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace corvane {

class CallRecordingPromptController {
public:
    static constexpr std::chrono::milliseconds defaultLifetime{5000};

    explicit CallRecordingPromptController(CallNotices& notices, std::chrono::milliseconds lifetime = defaultLifetime);
    ~CallRecordingPromptController() = default; // takes the notice away and tells nobody
    CallRecordingPromptController(const CallRecordingPromptController&) = delete;
    CallRecordingPromptController& operator=(const CallRecordingPromptController&) = delete;

    // Whether the notice was on the screen before it was dismissed. Where nothing can show one nobody was asked.
    enum class Seen { no, yes };
    using DismissHandler = std::function<void(Seen)>;

    // One of the two is called, once, unless this is destroyed before; either may destroy this.
    void show(const DetectedCall& call, std::function<void()> onRecord, DismissHandler onDismiss);
    // Counts as a dismissal, as every end does but the wish to record. Safe to repeat.
    void close();

private:
    void take(CallNoticeAnswer answer);

    CallNotices& m_notices;
    std::unique_ptr<CallNotice> m_notice;
    QTimer m_dismissTimer;
    std::function<void()> m_onRecord;
    DismissHandler m_onDismiss; // cleared when it is used
};

} // namespace corvane
