// The tab that a browser in front shows, asked of the accessibility bus as seldom as will do. Owned by the look at the
// desktop, on its thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/AccessibilityBus.h"
#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"
#include "CorvanePlatform/Linux/Frontmost/WindowPrivacy.h"

namespace corvane {

class BrowserTabs {
public:
    // `bus` must outlive it.
    explicit BrowserTabs(AccessibilityBus& bus) : m_bus(bus) {}

    // Nothing for a private window, for one that may be private, and if the browser does not tell. What was told holds
    // until the window or its title changes, and for 10 s at most: a page can change its address and keep its title,
    // and a browser can join the bus. That long a call may go unseen, at a fifth of the questions of a poll each 2 s.
    [[nodiscard]] std::optional<BrowserTab> tab(const FrontWindow& window, const KnownApplication& application,
                                                const Deadline& deadline);

private:
    struct Answer {
        std::optional<BrowserTab> tab;
        Deadline::Clock::time_point time;
    };
    enum class Told { all, nothingYet };
    struct Reading {
        Told told = Told::nothingYet;
        std::optional<BrowserTab> tab = {};
    };
    [[nodiscard]] Reading ask(const FrontWindow& window, const KnownApplication& application, const Deadline& deadline);
    [[nodiscard]] std::optional<AccessibleObject>
    frameOf(const FrontWindow& window, const std::vector<AccessibleObject>& applications, const Deadline& deadline);
    [[nodiscard]] std::vector<AccessibleObject> applicationsOf(const FrontWindow& window, Browser browser,
                                                               const Deadline& deadline);

    AccessibilityBus& m_bus;
    FrontWindow m_window;
    std::optional<Answer> m_answer;
};

} // namespace corvane
