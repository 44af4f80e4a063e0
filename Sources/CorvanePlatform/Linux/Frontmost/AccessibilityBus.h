// The accessible applications of the session and what their windows say (AT-SPI 2). Owned by the look at the desktop,
// on its thread. Nothing here switches accessibility on: that is the user's setting, and costs every browser processor
// time.
#pragma once

#include "CorvaneCore/Interfaces/FrontmostApplication.h"
#include "CorvanePlatform/Linux/Frontmost/BusConnection.h"

#include <QString>

#include <optional>

namespace corvane {

struct AccessibleObject {
    QByteArray busName;
    QByteArray path;

    friend bool operator==(const AccessibleObject&, const AccessibleObject&) = default;
};

class AccessibilityBus {
public:
    explicit AccessibilityBus(QByteArray sessionBusAddress);

    // Whether applications that start now are told to be accessible; nothing if it cannot be known. False without the
    // service. Browsers that were told so by their environment are on the bus all the same.
    [[nodiscard]] std::optional<bool> isEnabled(const Deadline& deadline);

    // All that read nothing, or the empty value, for whatever fails.
    [[nodiscard]] std::vector<AccessibleObject> applications(const Deadline& deadline);
    [[nodiscard]] std::optional<qint64> processOf(const QByteArray& busName, const Deadline& deadline);
    [[nodiscard]] std::optional<QString> name(const AccessibleObject& object, const Deadline& deadline);
    [[nodiscard]] bool isActive(const AccessibleObject& window, const Deadline& deadline);
    [[nodiscard]] std::vector<AccessibleObject> windows(const AccessibleObject& application, const Deadline& deadline);
    [[nodiscard]] std::optional<AccessibleObject> activeWindow(const AccessibleObject& application,
                                                               const Deadline& deadline);
    // Of the document that a browser's window shows.
    [[nodiscard]] std::optional<BrowserTab> shownDocument(const AccessibleObject& window, const Deadline& deadline);

private:
    [[nodiscard]] bool ensureSession();
    [[nodiscard]] bool ensureBus(const Deadline& deadline);
    [[nodiscard]] std::vector<AccessibleObject> children(const AccessibleObject& object, const Deadline& deadline);
    void askForActivations(const QByteArray& registry, const Deadline& deadline);
    [[nodiscard]] BusMessage property(const AccessibleObject& object, const char* interface, const char* name,
                                      const Deadline& deadline);

    QByteArray m_sessionBusAddress;
    std::unique_ptr<BusConnection> m_session;
    std::unique_ptr<BusConnection> m_bus;
    Deadline::Clock::time_point m_nextSession;
    QByteArray m_registry; // the one that was asked for activations
    std::map<QByteArray, qint64> m_processes;
};

} // namespace corvane
