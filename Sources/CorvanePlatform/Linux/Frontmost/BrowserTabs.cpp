#include "CorvanePlatform/Linux/Frontmost/BrowserTabs.h"

namespace corvane {

namespace {

constexpr std::chrono::seconds maximumAge{10};

bool isProduct(Browser browser, const std::optional<QString>& name) {
    const auto products = productNames(browser);
    return name && std::ranges::any_of(products, [&name](const QString& product) { return name->startsWith(product); });
}

} // namespace

std::optional<BrowserTab> BrowserTabs::tab(const FrontWindow& window, const KnownApplication& application,
                                           const Deadline& deadline) {
    const auto now = Deadline::Clock::now();
    if (m_answer && m_window == window && now - m_answer->time < maximumAge)
        return m_answer->tab;
    m_answer.reset();
    const Reading reading = ask(window, application, deadline);
    if (reading.told == Told::all) {
        m_window = window;
        m_answer = Answer{.tab = reading.tab, .time = now};
    }
    return reading.tab;
}

BrowserTabs::Reading BrowserTabs::ask(const FrontWindow& window, const KnownApplication& application,
                                      const Deadline& deadline) {
    const Browser browser = *application.browser;
    const auto applications = applicationsOf(window, browser, deadline);
    if (applications.empty())
        return {.told = Told::all};
    for (const AccessibleObject& candidate : applications) {
        const auto frame = m_bus.activeWindow(candidate, deadline);
        if (!frame)
            continue;
        const auto title = m_bus.name(*frame, deadline);
        if (!title)
            return {};
        // A window that only the bus tells of has no other title than the accessible one.
        const auto ownTitle = window.source == FrontWindowSource::accessibility ? std::nullopt : window.title;
        if (windowPrivacy(browser, application.browserWindow, *title, ownTitle) != WindowPrivacy::ordinary)
            return {.told = Told::all};
        auto tab = m_bus.shownDocument(*frame, deadline);
        return {.told = tab ? Told::all : Told::nothingYet, .tab = std::move(tab)};
    }
    return {};
}

// By the process; in a sandbox the bus knows a proxy in its place, and there the name of the product must do.
std::vector<AccessibleObject> BrowserTabs::applicationsOf(const FrontWindow& window, Browser browser,
                                                          const Deadline& deadline) {
    const auto all = m_bus.applications(deadline);
    std::vector<AccessibleObject> found;
    std::ranges::copy_if(all, std::back_inserter(found), [&](const AccessibleObject& object) {
        const auto process = m_bus.processOf(object.busName, deadline);
        return process && process == window.processIdentifier;
    });
    if (found.empty())
        std::ranges::copy_if(all, std::back_inserter(found), [&](const AccessibleObject& object) {
            return isProduct(browser, m_bus.name(object, deadline));
        });
    return found;
}

} // namespace corvane
