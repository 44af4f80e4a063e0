#include "CorvanePlatform/Linux/Desktop/DesktopCallNotices.h"

#include "CorvanePlatform/Linux/Desktop/NotificationService.h"

namespace corvane {

namespace {

class Notice final : public CallNotice {
public:
    explicit Notice(std::shared_ptr<NotificationService> service) : m_service(std::move(service)) {}
    ~Notice() override { m_service->takeAway(); }
    Notice(const Notice&) = delete;
    Notice& operator=(const Notice&) = delete;

    [[nodiscard]] bool wasShown() const override { return m_service->wasShown(); }

private:
    std::shared_ptr<NotificationService> m_service;
};

} // namespace

DesktopCallNotices::DesktopCallNotices() = default;

DesktopCallNotices::~DesktopCallNotices() = default;

std::unique_ptr<CallNotice> DesktopCallNotices::show(const CallNoticeContent& content, AnswerHandler onAnswer) {
    if (!m_service)
        m_service = std::make_shared<NotificationService>();
    m_service->show(content, std::move(onAnswer));
    return std::make_unique<Notice>(m_service);
}

} // namespace corvane
