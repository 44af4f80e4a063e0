// The desktop's preferences through its settings portal (org.freedesktop.portal.Settings), the same for every desktop
// and for a sandbox. CORVANE_COLOR_SCHEME (light or dark) and CORVANE_REDUCED_MOTION (1 or 0) stand above it. Asks when
// it is made and follows changes; main thread, never waits.
#pragma once

#include "CorvaneCore/Interfaces/DesktopPreferences.h"
#include "CorvanePlatform/Linux/Desktop/DesktopBus.h"

#include <QDBusVariant>

#include <optional>

namespace corvane {

class PortalDesktopPreferences final : public DesktopPreferences {
    Q_OBJECT

public:
    PortalDesktopPreferences();

    [[nodiscard]] ColorScheme colorScheme() const override { return m_forcedScheme.value_or(m_scheme); }
    [[nodiscard]] bool isMotionReduced() const override;
    [[nodiscard]] bool isKnown() const override { return m_isKnown; }

private Q_SLOTS:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    // Whether it made a difference.
    bool take(const QString& group, const QString& key, const QVariant& value);

    std::optional<ColorScheme> m_forcedScheme;
    std::optional<bool> m_forcedMotion;
    ColorScheme m_scheme = ColorScheme::noPreference;
    bool m_hasNoAnimations = false;
    bool m_wantsReducedMotion = false;
    bool m_isKnown = false;
    DesktopBus m_bus{DesktopBus::Which::session};
};

} // namespace corvane
