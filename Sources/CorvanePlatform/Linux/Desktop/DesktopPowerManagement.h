// Inhibits sleep by systemd-logind, or where that is not to be had by the desktop (org.freedesktop.PowerManagement,
// else org.freedesktop.ScreenSaver). Without any of them, or without a bus, it does nothing. Main thread, never waits.
#pragma once

#include "CorvaneCore/Interfaces/PowerManagement.h"
#include "CorvanePlatform/Linux/Desktop/DesktopBus.h"

#include <QDBusUnixFileDescriptor>

#include <vector>

namespace corvane {

class DesktopPowerManagement final : public PowerManagement {
    Q_OBJECT

public:
    void keepAwake(const QString& reason) override;
    void release() override;
    // Whether the system has confirmed all it was asked for. Its answer comes some time after keepAwake().
    [[nodiscard]] bool isHeldBySystem() const { return m_locks.size() == 2; }

private Q_SLOTS:
    void takeShutdown(bool isStarting, const QDBusMessage& message);

private:
    // A service of the desktop that gives a number for an inhibition, and takes that number back.
    struct DesktopService {
        QString name;
        QString path;
        QString interface;
    };
    struct DesktopInhibition {
        DesktopService service;
        uint cookie;
    };
    [[nodiscard]] static const std::vector<DesktopService>& desktopServices();

    void inhibitBySystem(const char* what, const char* mode, const std::function<void()>& onRefusal);
    void inhibitByDesktop(std::size_t candidate);
    void uninhibit(const DesktopInhibition& inhibition);

    DesktopBus m_system{DesktopBus::Which::system};
    DesktopBus m_session{DesktopBus::Which::session};
    int m_holding = 0; // the number of the wish that holds, 0 for none
    int m_lastWish = 0;
    QString m_reason;
    QString m_logind; // its unique name: anybody may send a signal that looks like one of it
    bool m_listens = false;
    std::vector<QDBusUnixFileDescriptor> m_locks;
    std::optional<DesktopInhibition> m_desktopInhibition;
};

} // namespace corvane
