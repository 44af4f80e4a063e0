// The tab that a browser in front shows, asked of the accessibility bus. Owned by the look at the desktop, on its
// thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/AccessibilityBus.h"
#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"
#include "CorvanePlatform/Linux/Frontmost/WindowPrivacy.h"

namespace corvane {

class BrowserTabs {
public:
    // `bus` must outlive it.
    explicit BrowserTabs(AccessibilityBus& bus) : m_bus(bus) {}

    // Nothing for a private window, for one that may be private, and if the browser does not tell. Nothing is kept from
    // one question to the next: a page can change its address and keep its title.
    [[nodiscard]] std::optional<BrowserTab> tab(const FrontWindow& window, const KnownApplication& application,
                                                const Deadline& deadline);

private:
    [[nodiscard]] std::optional<AccessibleObject>
    frameOf(const FrontWindow& window, const std::vector<AccessibleObject>& applications, const Deadline& deadline);
    [[nodiscard]] std::vector<AccessibleObject> applicationsOf(const FrontWindow& window, Browser browser,
                                                               const Deadline& deadline);

    AccessibilityBus& m_bus;
};

} // namespace corvane
