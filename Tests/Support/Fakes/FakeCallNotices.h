// Notices on a screen that the test looks at and answers. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"

#include <optional>
#include <utility>
#include <vector>

namespace corvane {

class FakeCallNotices final : public CallNotices {
public:
    bool works = true;
    std::vector<CallNoticeContent> shown; // all until now
    int wishes = 0;                       // also those that could not be shown

    [[nodiscard]] std::unique_ptr<CallNotice> show(const CallNoticeContent& content, AnswerHandler onAnswer) override {
        ++wishes;
        if (works)
            shown.push_back(content);
        m_onAnswer = std::move(onAnswer);
        return std::make_unique<Notice>(*this);
    }

    [[nodiscard]] bool isOnScreen() const { return static_cast<bool>(m_onAnswer); }
    void answer(CallNoticeAnswer answer) {
        if (const auto handler = std::exchange(m_onAnswer, nullptr))
            handler(answer);
    }

private:
    class Notice final : public CallNotice {
    public:
        explicit Notice(FakeCallNotices& all) : m_all(all), m_wasShown(all.works) {}
        ~Notice() override { m_all.m_onAnswer = nullptr; }
        [[nodiscard]] bool wasShown() const override { return m_wasShown; }

    private:
        FakeCallNotices& m_all;
        bool m_wasShown;
    };

    AnswerHandler m_onAnswer;
};

} // namespace corvane
