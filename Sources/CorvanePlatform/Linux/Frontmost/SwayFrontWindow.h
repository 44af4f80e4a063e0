// The window in front as the compositor sway, or one that speaks its protocol, tells it: Wayland's own windows and
// those of XWayland. Owned by the look at the desktop, on its thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/Deadline.h"
#include "CorvanePlatform/Linux/Frontmost/FrontWindow.h"

#include <QByteArray>

namespace corvane {

class SwayFrontWindow {
public:
    // `socketPath` as in SWAYSOCK; empty if there is none.
    explicit SwayFrontWindow(QByteArray socketPath);

    // `unknown` if the compositor cannot be asked. One that hangs is left alone for a while.
    [[nodiscard]] FrontWindowReading read(const Deadline& deadline);

private:
    QByteArray m_socketPath;
    Deadline::Clock::time_point m_nextAttempt;
};

// Of the answer to GET_TREE (sway-ipc(7)). Throws JsonError if it is none.
[[nodiscard]] FrontWindowReading frontWindowOfSwayTree(const QByteArray& json);

} // namespace corvane
