// The question whether to record a call, in a small panel of its own below the top of the screen: above everything,
// also a window that fills the screen, on every workspace, and never with the keyboard's focus. For X11, where a
// program may ask for that. Owned by the application; main thread.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"
#include "CorvaneCore/Interfaces/DesktopPreferences.h"

#include <QRect>

namespace corvane {

enum class CallNoticeSurface { panel, desktopNotification };

// `platformName` is that of the toolkit's platform. Under Wayland a window of ours would take the keyboard from the
// call, and nothing else is known to keep a window on top.
[[nodiscard]] CallNoticeSurface callNoticeSurface(const QString& platformName);

// Where the panel stands on a screen whose part without docks and bars this is; device-independent pixels.
[[nodiscard]] QRect callNoticeFrame(const QRect& available);

class PanelCallNotices final : public CallNotices {
public:
    explicit PanelCallNotices(std::shared_ptr<const DesktopPreferences> preferences)
        : m_preferences(std::move(preferences)) {}

    // The views are loaded for each notice, and given back with it.
    [[nodiscard]] std::unique_ptr<CallNotice> show(const CallNoticeContent& content, AnswerHandler onAnswer) override;

private:
    std::shared_ptr<const DesktopPreferences> m_preferences;
};

// The panel where it can be had, otherwise `desktop`.
[[nodiscard]] std::shared_ptr<CallNotices> callNoticesFor(const QString& platformName,
                                                          std::shared_ptr<CallNotices> desktop,
                                                          std::shared_ptr<const DesktopPreferences> preferences);

} // namespace corvane
