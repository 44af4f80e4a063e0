// What the user has set for the whole desktop and expects of every window. Main thread.
#pragma once

#include <QObject>

namespace corvane {

enum class ColorScheme { noPreference, light, dark };

class DesktopPreferences : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;
    [[nodiscard]] virtual bool isMotionReduced() const = 0;
    // False while the desktop has still to answer; changed() tells when it has.
    [[nodiscard]] virtual bool isKnown() const { return true; }

Q_SIGNALS:
    void changed();
};

} // namespace corvane
