#include "CorvaneApp/Views/Window/PanelCallNotices.h"

#include "CorvaneApp/Views/Window/CallNoticePanel.h"

namespace corvane {

CallNoticeSurface callNoticeSurface(const QString& platformName) {
    return platformName == QStringLiteral("xcb") ? CallNoticeSurface::panel : CallNoticeSurface::desktopNotification;
}

QRect callNoticeFrame(const QRect& available) {
    constexpr QSize size(480, 86);
    constexpr int gap = 14;
    return {QPoint(available.x() + (available.width() - size.width()) / 2, available.y() + gap), size};
}

std::unique_ptr<CallNotice> PanelCallNotices::show(const CallNoticeContent& content, AnswerHandler onAnswer) {
    return std::make_unique<CallNoticePanel>(content, std::move(onAnswer), *m_preferences);
}

std::shared_ptr<CallNotices> callNoticesFor(const QString& platformName, std::shared_ptr<CallNotices> desktop,
                                            std::shared_ptr<const DesktopPreferences> preferences) {
    if (callNoticeSurface(platformName) == CallNoticeSurface::desktopNotification)
        return desktop;
    return std::make_shared<PanelCallNotices>(std::move(preferences));
}

} // namespace corvane
