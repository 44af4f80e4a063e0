#include "CorvaneApp/Views/Window/Appearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>

#include <algorithm>

namespace corvane {

namespace {

constexpr double narrowestSidebar = 240;
constexpr double widestSidebar = 360;

const QString sidebarKey = QStringLiteral("sidebarWidth");
const QString sizeKey = QStringLiteral("windowSize");
const QString maximizedKey = QStringLiteral("maximized");

} // namespace

bool isDark(const DesktopPreferences& preferences) {
    if (preferences.colorScheme() != ColorScheme::noPreference)
        return preferences.colorScheme() == ColorScheme::dark;
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

Appearance::Appearance(std::shared_ptr<DesktopPreferences> preferences, QString stateFile, QObject* parent)
    : QObject(parent), m_preferences(std::move(preferences)), m_stateFile(std::move(stateFile)) {
    connect(m_preferences.get(), &DesktopPreferences::changed, this, &Appearance::preferencesChanged);
    qGuiApp->installEventFilter(this);
    const QSettings state(m_stateFile, QSettings::IniFormat);
    m_sidebarWidth = std::clamp(state.value(sidebarKey, m_sidebarWidth).toDouble(), narrowestSidebar, widestSidebar);
    m_windowSize = state.value(sizeKey).toSize();
    m_isMaximized = state.value(maximizedKey).toBool();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange)
        Q_EMIT preferencesChanged();
    return QObject::eventFilter(watched, event);
}

void Appearance::setSidebarWidth(double width) {
    const double clamped = std::clamp(width, narrowestSidebar, widestSidebar);
    if (clamped == m_sidebarWidth)
        return;
    m_sidebarWidth = clamped;
    Q_EMIT sidebarWidthChanged();
}

void Appearance::rememberWindow(const QSize& size, bool isMaximized) {
    m_isMaximized = isMaximized;
    if (!isMaximized)
        m_windowSize = size;
    save();
}

void Appearance::save() const {
    QSettings state(m_stateFile, QSettings::IniFormat);
    state.setValue(sidebarKey, m_sidebarWidth);
    state.setValue(sizeKey, m_windowSize);
    state.setValue(maximizedKey, m_isMaximized);
}

} // namespace corvane
