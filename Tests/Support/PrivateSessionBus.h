// A session bus and, if asked for, a keyring of the test's own, so that no test touches those of the user. While a bus
// lives, DBUS_SESSION_BUS_ADDRESS names it. Both servers are ended by their process ids. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <QByteArray>
#include <QTemporaryDir>

namespace corvane {

class PrivateSessionBus {
public:
    PrivateSessionBus();
    ~PrivateSessionBus();
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    // Empty if the bus could not be started.
    [[nodiscard]] QString address() const { return m_address; }
    [[nodiscard]] std::int64_t processID() const { return m_bus->processID(); }

    enum class Keyring { unlocked, neverUnlocked };
    // The files of the keyring outlive the daemon, so that it can be started again.
    void startKeyring(Keyring keyring);
    void stopKeyring();
    void lockKeyring();

    [[nodiscard]] bool hasOwner(const char* busName) const;

private:
    [[nodiscard]] CommandResult call(const QStringList& arguments) const;
    [[nodiscard]] std::shared_ptr<LaunchedProcess> start(const QString& name, const QString& command);

    QTemporaryDir m_directory;
    std::shared_ptr<LaunchedProcess> m_bus;
    std::shared_ptr<LaunchedProcess> m_keyring;
    QString m_address;
    QByteArray m_addressBefore;
};

} // namespace corvane
