#include "CorvanePlatform/Linux/Frontmost/DesktopLook.h"

namespace corvane {

namespace {

constexpr std::chrono::seconds statusAge{30};

} // namespace

DesktopSession DesktopSession::ofEnvironment() {
    DesktopSession session{.x11Display = qgetenv("DISPLAY"),
                           .waylandDisplay = qgetenv("WAYLAND_DISPLAY"),
                           .swaySocket = qgetenv("SWAYSOCK"),
                           .sessionBusAddress = qgetenv("DBUS_SESSION_BUS_ADDRESS")};
    const QByteArray runtimeDirectory = qgetenv("XDG_RUNTIME_DIR");
    if (session.sessionBusAddress.isEmpty() && !runtimeDirectory.isEmpty())
        session.sessionBusAddress = "unix:path=" + runtimeDirectory + "/bus";
    return session;
}

DesktopLook::DesktopLook(DesktopSession session)
    : m_session(std::move(session)),
      m_x11(m_session.x11Display),
      m_sway(m_session.swaySocket),
      m_bus(m_session.sessionBusAddress),
      m_accessible(m_bus),
      m_tabs(m_bus) {}

std::optional<FrontmostApplication> DesktopLook::look(const Deadline& deadline) {
    const auto reading = frontWindow(deadline);
    noteAccessibility(deadline);
    if (reading.outcome != FrontWindowReading::Outcome::window)
        return std::nullopt;
    const FrontWindow& window = reading.window;
    const auto known = knownApplication(window);
    FrontmostApplication application{.bundleIdentifier = known ? known->identifier : window.applicationId,
                                     .localizedName = localizedName(window, known, deadline),
                                     .processIdentifier = window.processIdentifier,
                                     .windowTitle = window.title,
                                     .activeTab = std::nullopt};
    if (known && known->browser) {
        application.activeTab = m_tabs.tab(window, *known, deadline);
        // The title of a private window is the title of a private page.
        if (!application.activeTab)
            application.windowTitle.reset();
    }
    return application;
}

// An installed web application has an entry by its instance, while its class is the browser's. Of others the class
// alone counts: the instance is the name of whatever program was started, a terminal perhaps.
std::optional<QString> DesktopLook::localizedName(const FrontWindow& window,
                                                  const std::optional<KnownApplication>& known,
                                                  const Deadline& deadline) {
    const bool mayBeWebApplication =
        (known && known->browser) || window.instance.startsWith(QLatin1String("crx_"), Qt::CaseInsensitive);
    if (mayBeWebApplication)
        if (auto name = m_entries.name(window.instance, deadline))
            return name;
    if (auto name = m_entries.name(window.applicationId, deadline))
        return name;
    if (known && known->browser)
        return productNames(*known->browser).front();
    return window.applicationId.isEmpty() ? std::nullopt : std::optional(window.applicationId);
}

// Under XWayland the X server knows no active window while one of Wayland's own has the focus; without Wayland that
// means that nothing is in front.
FrontWindowReading DesktopLook::frontWindow(const Deadline& deadline) {
    using Outcome = FrontWindowReading::Outcome;
    auto source = FrontWindowSource::sway;
    auto reading = m_sway.read(deadline);
    if (reading.outcome == Outcome::unknown) {
        source = FrontWindowSource::x11;
        reading = m_x11.read(deadline);
        if (reading.outcome != Outcome::window && !m_session.waylandDisplay.isEmpty()) {
            source = FrontWindowSource::accessibility;
            reading = m_accessible.read(deadline);
        }
    }
    if (reading.outcome != Outcome::unknown)
        m_status.source = source;
    return reading;
}

void DesktopLook::noteAccessibility(const Deadline& deadline) {
    const auto now = Deadline::Clock::now();
    if (now < m_nextStatus)
        return;
    m_nextStatus = now + statusAge;
    using Accessibility = FrontmostStatus::Accessibility;
    const auto isEnabled = m_bus.isEnabled(deadline);
    m_status.accessibility = isEnabled ? (*isEnabled ? Accessibility::on : Accessibility::off) : Accessibility::unknown;
}

} // namespace corvane
