#include "CorvanePlatform/Linux/Desktop/PortalDesktopPreferences.h"

#include <QDBusArgument>
#include <QMap>
#include <QVariantMap>

namespace corvane {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");

std::optional<ColorScheme> forcedScheme() {
    const QByteArray scheme = qgetenv("CORVANE_COLOR_SCHEME");
    if (scheme == "light")
        return ColorScheme::light;
    return scheme == "dark" ? std::optional(ColorScheme::dark) : std::nullopt;
}

std::optional<bool> forcedMotion() {
    const QByteArray motion = qgetenv("CORVANE_REDUCED_MOTION");
    return motion.isEmpty() ? std::nullopt : std::optional(motion != "0");
}

// The portal's numbers; one that is not known yet is no preference.
ColorScheme schemeOf(const QVariant& value) {
    switch (value.toUInt()) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return ColorScheme::noPreference;
    }
}

} // namespace

PortalDesktopPreferences::PortalDesktopPreferences()
    : m_forcedScheme(forcedScheme()), m_forcedMotion(forcedMotion()), m_isKnown(m_forcedScheme && m_forcedMotion) {
    if (!m_isKnown)
        readAll();
}

bool PortalDesktopPreferences::isMotionReduced() const {
    return m_forcedMotion.value_or(m_hasNoAnimations || m_wantsReducedMotion);
}

void PortalDesktopPreferences::readAll() {
    m_bus.use([this](QDBusConnection* bus) {
        // From any sender: naming the service would have the library ask the bus for its owner and wait.
        if (bus)
            bus->connect({}, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                         SLOT(takeSetting(QString, QString, QDBusVariant)));
    });
    QDBusMessage message =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    message.setArguments({QStringList{appearanceGroup, interfaceGroup}});
    m_bus.call(message, [this](const std::optional<QDBusMessage>& reply) {
        if (reply && reply->signature() == QLatin1String("a{sa{sv}}")) {
            const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply->arguments().value(0));
            for (auto group = groups.begin(); group != groups.end(); ++group) {
                for (auto entry = group->begin(); entry != group->end(); ++entry)
                    take(group.key(), entry.key(), entry.value());
            }
        }
        m_isKnown = true;
        Q_EMIT changed();
    });
}

void PortalDesktopPreferences::takeSetting(const QString& group, const QString& key, const QDBusVariant& value) {
    if (take(group, key, value.variant()))
        Q_EMIT changed();
}

bool PortalDesktopPreferences::take(const QString& group, const QString& key, const QVariant& value) {
    const ColorScheme schemeBefore = colorScheme();
    const bool motionBefore = isMotionReduced();
    if (group == appearanceGroup && key == QLatin1String("color-scheme"))
        m_scheme = schemeOf(value);
    else if (group == appearanceGroup && key == QLatin1String("reduced-motion"))
        m_wantsReducedMotion = value.toUInt() == 1;
    else if (group == interfaceGroup && key == QLatin1String("enable-animations"))
        m_hasNoAnimations = !value.toBool();
    return colorScheme() != schemeBefore || isMotionReduced() != motionBefore;
}

} // namespace corvane
