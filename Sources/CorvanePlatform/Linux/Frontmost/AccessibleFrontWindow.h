// The window in front as accessible applications tell it, for Wayland compositors that tell nobody. Applications
// without accessibility stay unknown. Owned by the look at the desktop, on its thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/AccessibilityBus.h"
#include "CorvanePlatform/Linux/Frontmost/FrontWindow.h"

namespace corvane {

class AccessibleFrontWindow {
public:
    // `bus` must outlive it.
    explicit AccessibleFrontWindow(AccessibilityBus& bus) : m_bus(bus) {}

    // `unknown` if no application says that it is in front. The one that was is asked first.
    [[nodiscard]] FrontWindowReading read(const Deadline& deadline);

private:
    struct Found {
        AccessibleObject application;
        AccessibleObject window;
    };
    [[nodiscard]] std::optional<Found> find(const Deadline& deadline);

    AccessibilityBus& m_bus;
    std::optional<Found> m_last;
};

// The desktop's name for the application of a process: its program if that is a known one, otherwise that of its
// systemd scope, which sandboxes and desktops name after the application (systemd.io/DESKTOP_ENVIRONMENTS), or else the
// program. Empty if the process is gone.
[[nodiscard]] QString applicationIdOfProcess(qint64 processIdentifier);

// The same of the content of /proc/PID/cgroup; empty if it names no application.
[[nodiscard]] QString applicationIdOfControlGroup(const QString& content);

} // namespace corvane
