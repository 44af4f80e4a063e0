// One look at what is in front: asks the sources in order and puts their facts together. Owned by the reader, on the
// reader's own thread from the first look on.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/AccessibleFrontWindow.h"
#include "CorvanePlatform/Linux/Frontmost/BrowserTabs.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopEntries.h"
#include "CorvanePlatform/Linux/Frontmost/SwayFrontWindow.h"
#include "CorvanePlatform/Linux/Frontmost/X11FrontWindow.h"

namespace corvane {

// Where the session's servers are, as its environment says; empty for what it has not.
struct DesktopSession {
    QByteArray x11Display;
    QByteArray waylandDisplay;
    QByteArray swaySocket;
    QByteArray sessionBusAddress;

    [[nodiscard]] static DesktopSession ofEnvironment();
};

// What the sources can do here, for a page that tells the user.
struct FrontmostStatus {
    enum class Accessibility { unknown, off, on };

    // The last source that could tell; nothing if none ever could.
    std::optional<FrontWindowSource> source;
    // Of applications that start now. Off means: no tab of a browser, unless it was told by its environment.
    Accessibility accessibility = Accessibility::unknown;
};

class DesktopLook {
public:
    explicit DesktopLook(DesktopSession session);

    // Blocks until the deadline at most. Whatever fails reads as absent.
    [[nodiscard]] std::optional<FrontmostApplication> look(const Deadline& deadline);

    [[nodiscard]] const FrontmostStatus& status() const { return m_status; }

private:
    [[nodiscard]] FrontWindowReading frontWindow(const Deadline& deadline);
    [[nodiscard]] std::optional<QString>
    localizedName(const FrontWindow& window, const std::optional<KnownApplication>& known, const Deadline& deadline);
    void noteAccessibility(const Deadline& deadline);

    DesktopSession m_session;
    X11FrontWindow m_x11;
    SwayFrontWindow m_sway;
    AccessibilityBus m_bus;
    AccessibleFrontWindow m_accessible;
    BrowserTabs m_tabs;
    DesktopEntries m_entries;
    FrontmostStatus m_status;
    Deadline::Clock::time_point m_nextStatus;
};

} // namespace corvane
