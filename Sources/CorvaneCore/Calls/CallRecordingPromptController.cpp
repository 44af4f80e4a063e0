#include "CorvaneCore/Calls/CallRecordingPromptController.h"

#include "CorvaneContract/Text/UserText.h"

#include <utility>

namespace corvane {

namespace {

CallNoticeContent contentFor(const DetectedCall& call) {
    return {.title = UserText::tr("Record this meeting?"),
            .subtitle = call.subtitle(),
            .buttons = {{UserText::tr("Not now"), CallNoticeAnswer::notNow},
                        {UserText::tr("Record"), CallNoticeAnswer::record}}};
}

} // namespace

CallRecordingPromptController::CallRecordingPromptController(CallNotices& notices, std::chrono::milliseconds lifetime)
    : m_notices(notices) {
    m_dismissTimer.setSingleShot(true);
    m_dismissTimer.setTimerType(Qt::PreciseTimer);
    m_dismissTimer.setInterval(lifetime);
    QObject::connect(&m_dismissTimer, &QTimer::timeout, &m_dismissTimer, [this] { close(); });
}

void CallRecordingPromptController::show(const DetectedCall& call, std::function<void()> onRecord,
                                         DismissHandler onDismiss) {
    m_onRecord = std::move(onRecord);
    m_onDismiss = std::move(onDismiss);
    m_notice = m_notices.show(contentFor(call), [this](CallNoticeAnswer answer) { take(answer); });
    m_dismissTimer.start();
}

void CallRecordingPromptController::take(CallNoticeAnswer answer) {
    if (answer != CallNoticeAnswer::record) {
        close();
        return;
    }
    m_onDismiss = nullptr; // closing is no dismissal now
    const auto onRecord = std::exchange(m_onRecord, nullptr);
    close();
    if (onRecord)
        onRecord();
}

void CallRecordingPromptController::close() {
    m_dismissTimer.stop();
    const Seen seen = m_notice && m_notice->wasShown() ? Seen::yes : Seen::no;
    m_notice.reset();
    m_onRecord = nullptr;
    if (const auto onDismiss = std::exchange(m_onDismiss, nullptr))
        onDismiss(seen);
}

} // namespace corvane
