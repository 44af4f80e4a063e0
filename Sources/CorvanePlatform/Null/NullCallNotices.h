// No desktop to show a notice on: none is ever seen or answered. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"

namespace corvane {

class NullCallNotices final : public CallNotices {
public:
    [[nodiscard]] std::unique_ptr<CallNotice> show(const CallNoticeContent&, AnswerHandler) override {
        return std::make_unique<Notice>();
    }

private:
    class Notice final : public CallNotice {
    public:
        [[nodiscard]] bool wasShown() const override { return false; }
    };
};

} // namespace corvane
