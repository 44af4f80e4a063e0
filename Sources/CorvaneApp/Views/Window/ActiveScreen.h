// On which of several screens the user is at work, for what has to be seen at once.
#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <vector>

class QScreen;

namespace corvane {

// Which of the screens shows the point; the first where none does, or where there is no point. All in the pixels of the
// X server.
[[nodiscard]] std::size_t screenShowing(const std::optional<QPoint>& point, const std::vector<QRect>& screens);

// That of the window with the keyboard's focus, the primary one where that is not known; null without any screen. Main
// thread, after the application object.
[[nodiscard]] QScreen* activeScreen();

} // namespace corvane
