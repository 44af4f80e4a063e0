// A desktop that says nothing of its preferences, unless its maker does.
#pragma once

#include "CorvaneCore/Interfaces/DesktopPreferences.h"

namespace corvane {

class FixedDesktopPreferences final : public DesktopPreferences {
public:
    explicit FixedDesktopPreferences(ColorScheme scheme = ColorScheme::noPreference, bool isMotionReduced = false)
        : m_scheme(scheme), m_isMotionReduced(isMotionReduced) {}

    [[nodiscard]] ColorScheme colorScheme() const override { return m_scheme; }
    [[nodiscard]] bool isMotionReduced() const override { return m_isMotionReduced; }

private:
    ColorScheme m_scheme;
    bool m_isMotionReduced;
};

} // namespace corvane
