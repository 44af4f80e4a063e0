#include "CorvanePlatform/Linux/Frontmost/BrowserTabs.h"

namespace corvane {

namespace {

bool isProduct(Browser browser, const std::optional<QString>& name) {
    const auto products = productNames(browser);
    return name && std::ranges::any_of(products, [&name](const QString& product) { return name->startsWith(product); });
}

} // namespace

std::optional<BrowserTab> BrowserTabs::tab(const FrontWindow& window, const KnownApplication& application,
                                           const Deadline& deadline) {
    const Browser browser = *application.browser;
    const auto frame = frameOf(window, applicationsOf(window, browser, deadline), deadline);
    const auto title = frame ? m_bus.name(*frame, deadline) : std::nullopt;
    if (!title)
        return std::nullopt;
    // A window that only the bus tells of has no other title than the accessible one.
    const auto ownTitle = window.source == FrontWindowSource::accessibility ? std::nullopt : window.title;
    if (windowPrivacy(browser, application.browserWindow, *title, ownTitle) != WindowPrivacy::ordinary)
        return std::nullopt;
    return m_bus.shownDocument(*frame, deadline);
}

// The active one. Without a window manager Chromium calls none of them so, and the only one with the title of the
// window in front must be it.
std::optional<AccessibleObject> BrowserTabs::frameOf(const FrontWindow& window,
                                                     const std::vector<AccessibleObject>& applications,
                                                     const Deadline& deadline) {
    std::vector<AccessibleObject> sameTitle;
    for (const AccessibleObject& application : applications) {
        for (const AccessibleObject& frame : m_bus.windows(application, deadline)) {
            if (m_bus.isActive(frame, deadline))
                return frame;
            if (window.title && m_bus.name(frame, deadline) == window.title)
                sameTitle.push_back(frame);
        }
    }
    return sameTitle.size() == 1 ? std::optional(sameTitle.front()) : std::nullopt;
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
