// How the window is to look: the desktop's preferences, and what the user did to the window itself, which is kept in a
// file of its own. Owned by the window's controller, on the main thread.
#pragma once

#include "CorvaneCore/Interfaces/DesktopPreferences.h"

#include <QObject>
#include <QSize>

#include <memory>

namespace corvane {

// Where the desktop has no preference the toolkit's palette decides.
[[nodiscard]] bool isDark(const DesktopPreferences& preferences);

class Appearance final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY preferencesChanged)
    Q_PROPERTY(bool isMotionReduced READ isMotionReduced NOTIFY preferencesChanged)
    Q_PROPERTY(double sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY sidebarWidthChanged)

public:
    // `stateFile` need not exist; one that cannot be written is forgotten with the process.
    Appearance(std::shared_ptr<DesktopPreferences> preferences, QString stateFile, QObject* parent = nullptr);

    [[nodiscard]] bool isDark() const { return corvane::isDark(*m_preferences); }
    [[nodiscard]] bool isMotionReduced() const { return m_preferences->isMotionReduced(); }
    [[nodiscard]] double sidebarWidth() const { return m_sidebarWidth; } // device-independent pixels
    void setSidebarWidth(double width);
    // As the window was left; invalid if it never was.
    [[nodiscard]] QSize windowSize() const { return m_windowSize; }
    [[nodiscard]] bool isMaximized() const { return m_isMaximized; }
    void rememberWindow(const QSize& size, bool isMaximized);

Q_SIGNALS:
    void preferencesChanged();
    void sidebarWidthChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void save() const;

    std::shared_ptr<DesktopPreferences> m_preferences;
    QString m_stateFile;
    double m_sidebarWidth = 280;
    QSize m_windowSize;
    bool m_isMaximized = false;
};

} // namespace corvane
