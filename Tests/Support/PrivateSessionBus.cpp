#include "Support/PrivateSessionBus.h"

#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QDir>

#include <signal.h>

namespace corvane {

namespace {

// Without any service that the bus could start on demand.
constexpr const char* busConfiguration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>
)";

void end(const std::shared_ptr<LaunchedProcess>& process) {
    if (!process || !process->isRunning())
        return;
    ::kill(static_cast<pid_t>(process->processID()), SIGKILL);
    static_cast<void>(waitFor([&] { return !process->isRunning(); }));
}

} // namespace

PrivateSessionBus::PrivateSessionBus() : m_addressBefore(qgetenv("DBUS_SESSION_BUS_ADDRESS")) {
    const QString configuration = m_directory.filePath(QStringLiteral("bus.conf"));
    writeFileAtomically(configuration, QString::fromUtf8(busConfiguration).arg(m_directory.path()).toUtf8());
    writeFileAtomically(m_directory.filePath(QStringLiteral("password")), "password");
    m_bus = start(QStringLiteral("bus"),
                  QStringLiteral("exec dbus-daemon --nofork --print-address --config-file=bus.conf"));
    const QString log = m_directory.filePath(QStringLiteral("bus.log"));
    if (!waitFor([&] { return readTextFile(log).value_or(QString()).contains(QLatin1Char('\n')); }))
        return;
    m_address = readTextFile(log)->section(QLatin1Char('\n'), 0, 0);
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

PrivateSessionBus::~PrivateSessionBus() {
    end(m_keyring);
    end(m_bus);
    m_addressBefore.isNull() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS")
                             : qputenv("DBUS_SESSION_BUS_ADDRESS", m_addressBefore);
}

std::shared_ptr<LaunchedProcess> PrivateSessionBus::start(const QString& name, const QString& command) {
    const QString log = m_directory.filePath(name + QStringLiteral(".log"));
    writeFileAtomically(log, {});
    return LinuxProcessLauncher().launch(
        {.executable = QStringLiteral("/bin/sh"),
         .arguments = {QStringLiteral("-c"), QStringLiteral("cd \"$HOME\" && ") + command},
         .environment = {{QStringLiteral("HOME"), m_directory.path()},
                         {QStringLiteral("XDG_DATA_HOME"), m_directory.path()},
                         {QStringLiteral("XDG_RUNTIME_DIR"), m_directory.path()},
                         {QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address}},
         .standardOutput = log,
         .standardError = QStringLiteral("/dev/null")},
        {});
}

void PrivateSessionBus::startKeyring(Keyring keyring) {
    const QString unlock = keyring == Keyring::unlocked ? QStringLiteral("--unlock <password") : QString();
    m_keyring = start(QStringLiteral("keyring"),
                      QStringLiteral("exec gnome-keyring-daemon --foreground --components=secrets ") + unlock);
    static_cast<void>(waitFor([&] { return hasOwner("org.freedesktop.secrets"); }));
}

void PrivateSessionBus::stopKeyring() {
    end(m_keyring);
    static_cast<void>(waitFor([&] { return !hasOwner("org.freedesktop.secrets"); }));
}

void PrivateSessionBus::lockKeyring() {
    static_cast<void>(
        call({QStringLiteral("--dest=org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
              QStringLiteral("org.freedesktop.Secret.Service.Lock"),
              QStringLiteral("array:objpath:/org/freedesktop/secrets/collection/login")}));
}

bool PrivateSessionBus::hasOwner(const char* busName) const {
    return call({QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus.NameHasOwner"),
                 QStringLiteral("string:%1").arg(QString::fromUtf8(busName))})
        .output.contains(QStringLiteral("boolean true"));
}

CommandResult PrivateSessionBus::call(const QStringList& arguments) const {
    return LinuxProcessLauncher().run(
        QStringLiteral("/usr/bin/dbus-send"),
        QStringList{QStringLiteral("--bus=") + m_address, QStringLiteral("--print-reply")} + arguments);
}

} // namespace corvane
