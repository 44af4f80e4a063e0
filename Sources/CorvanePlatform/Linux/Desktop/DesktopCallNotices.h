// The question whether to record a call, as a notification of the desktop (org.freedesktop.Notifications 1.2), which
// takes no focus on X11 and Wayland alike. Reaches for the session bus when the first notice is shown; main thread, and
// never waits on it.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"

namespace corvane {

class NotificationService;

class DesktopCallNotices final : public CallNotices {
public:
    DesktopCallNotices();
    ~DesktopCallNotices() override; // a notice that is still there goes with it

    [[nodiscard]] std::unique_ptr<CallNotice> show(const CallNoticeContent& content, AnswerHandler onAnswer) override;

private:
    std::shared_ptr<NotificationService> m_service; // shared with the notice
};

} // namespace corvane
