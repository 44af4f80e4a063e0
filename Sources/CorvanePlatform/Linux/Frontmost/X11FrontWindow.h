// The window in front as an X server tells it, XWayland's included. Owned by the look at the desktop, on its thread. A
// server that hangs costs the deadline of one look, and is then left alone for a while.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/Deadline.h"
#include "CorvanePlatform/Linux/Frontmost/FrontWindow.h"

#include <QByteArray>

#include <memory>

namespace corvane {

class X11FrontWindow {
public:
    // `display` as in DISPLAY; empty if there is none.
    explicit X11FrontWindow(QByteArray display);
    ~X11FrontWindow();

    // `unknown` if the server cannot be asked.
    [[nodiscard]] FrontWindowReading read(const Deadline& deadline);

private:
    class Session;
    struct Opening;
    [[nodiscard]] bool ensureSession(const Deadline& deadline);
    void startOpening();
    void leaveAlone();

    QByteArray m_display;
    std::unique_ptr<Session> m_session;
    std::shared_ptr<Opening> m_opening;
    Deadline::Clock::time_point m_nextOpening;
};

} // namespace corvane
