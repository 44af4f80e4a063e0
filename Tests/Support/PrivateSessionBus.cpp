#include "Support/PrivateSessionBus.h"

#include "Support/PrintQt.h"
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
    (void)waitFor([&] { return !process->isRunning(); });
}

} // namespace

PrivateSessionBus::PrivateSessionBus() : m_addressBefore(qgetenv("DBUS_SESSION_BUS_ADDRESS")) {
    const QString configuration = m_directory.filePath(u"bus.conf"_s);
    writeFileAtomically(configuration, QString::fromUtf8(busConfiguration).arg(m_directory.path()).toUtf8());
    writeFileAtomically(m_directory.filePath(u"password"_s), "password");
    m_bus = start(u"bus"_s, u"exec dbus-daemon --nofork --print-address --config-file=bus.conf"_s);
    const QString log = m_directory.filePath(u"bus.log"_s);
    if (!waitFor([&] { return readTextFile(log).value_or(QString()).contains(u'\n'); }))
        return;
    m_address = readTextFile(log)->section(u'\n', 0, 0);
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

PrivateSessionBus::~PrivateSessionBus() {
    end(m_keyring);
    end(m_bus);
    m_addressBefore.isNull() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS")
                             : qputenv("DBUS_SESSION_BUS_ADDRESS", m_addressBefore);
}

std::shared_ptr<LaunchedProcess> PrivateSessionBus::start(const QString& name, const QString& command) {
    const QString log = m_directory.filePath(name + u".log"_s);
    writeFileAtomically(log, {});
    return LinuxProcessLauncher().launch({.executable = u"/bin/sh"_s,
                                          .arguments = {u"-c"_s, u"cd \"$HOME\" && "_s + command},
                                          .environment = {{u"HOME"_s, m_directory.path()},
                                                          {u"XDG_DATA_HOME"_s, m_directory.path()},
                                                          {u"XDG_RUNTIME_DIR"_s, m_directory.path()},
                                                          {u"DBUS_SESSION_BUS_ADDRESS"_s, m_address}},
                                          .standardOutput = log,
                                          .standardError = u"/dev/null"_s},
                                         {});
}

void PrivateSessionBus::startKeyring(Keyring keyring) {
    const QString unlock = keyring == Keyring::unlocked ? u"--unlock <password"_s : QString();
    m_keyring = start(u"keyring"_s, u"exec gnome-keyring-daemon --foreground --components=secrets "_s + unlock);
    (void)waitFor([&] { return hasOwner("org.freedesktop.secrets"); });
}

void PrivateSessionBus::stopKeyring() {
    end(m_keyring);
    (void)waitFor([&] { return !hasOwner("org.freedesktop.secrets"); });
}

void PrivateSessionBus::lockKeyring() {
    (void)call({u"--dest=org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                u"org.freedesktop.Secret.Service.Lock"_s,
                u"array:objpath:/org/freedesktop/secrets/collection/login"_s});
}

bool PrivateSessionBus::hasOwner(const char* busName) const {
    return call({u"--dest=org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus.NameHasOwner"_s,
                 u"string:%1"_s.arg(QString::fromUtf8(busName))})
        .output.contains(u"boolean true"_s);
}

CommandResult PrivateSessionBus::call(const QStringList& arguments) const {
    return LinuxProcessLauncher().run(u"/usr/bin/dbus-send"_s,
                                      QStringList{u"--bus="_s + m_address, u"--print-reply"_s} + arguments);
}

} // namespace corvane
