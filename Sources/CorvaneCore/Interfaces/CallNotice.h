// The small notice that asks whether to record a call: on top of everything, on every workspace, and without the
// keyboard's focus, which belongs to the call. Owned by the application; main thread.
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace corvane {

enum class CallNoticeAnswer {
    record,
    notNow,
    closed, // it is gone without an answer
};

struct CallNoticeButton {
    QString title;
    CallNoticeAnswer answer;
};

// Plain text throughout; part of it comes from a window's title.
struct CallNoticeContent {
    QString title;
    QString subtitle;
    std::vector<CallNoticeButton> buttons; // in their order
};

class CallNotice {
public:
    // Takes it off the screen. No answer comes any more.
    virtual ~CallNotice() = default;

    // Whether it has been on the screen, as far as is known by now. Never becomes false again.
    [[nodiscard]] virtual bool wasShown() const = 0;
};

class CallNotices {
public:
    virtual ~CallNotices() = default;

    // Called once at most, on the main loop and not from within show(); may destroy the notice.
    using AnswerHandler = std::function<void(CallNoticeAnswer)>;

    // Returns at once. A notice that cannot be shown is never answered. At most one notice lives at a time.
    [[nodiscard]] virtual std::unique_ptr<CallNotice> show(const CallNoticeContent& content,
                                                           AnswerHandler onAnswer) = 0;
};

} // namespace corvane
