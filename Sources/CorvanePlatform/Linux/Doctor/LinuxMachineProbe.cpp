#include "CorvanePlatform/Linux/Doctor/LinuxMachineProbe.h"

#include "CorvanePlatform/Linux/Doctor/SessionBusProbe.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopLook.h"
#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/statvfs.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace corvane {

using namespace std::chrono_literals;

namespace {

constexpr auto busLimit = 3s;
constexpr auto lookLimit = 1s;

// Whether something takes connections at a socket; `name` begins with a NUL where it is no file.
Presence listenerAt(const QByteArray& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path)
        return Presence::absent;
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path)) + static_cast<socklen_t>(name.size());
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), size) == 0)
        return Presence::present;
    return errno == EAGAIN ? Presence::noAnswer : Presence::absent; // its queue is full
}

// The display of the machine itself, as ":1" or ":1.0"; another machine's is believed.
DisplayFacts x11Display() {
    const QString name = qEnvironmentVariable("DISPLAY");
    if (name.isEmpty())
        return {};
    if (!name.startsWith(QLatin1Char(':')) && !name.startsWith(QLatin1String("unix:")))
        return {name, Presence::present};
    const QString number = name.section(QLatin1Char(':'), -1).section(QLatin1Char('.'), 0, 0);
    const QByteArray file = QByteArrayLiteral("/tmp/.X11-unix/X") + number.toUtf8();
    const Presence abstract = listenerAt('\0' + file);
    return {name, abstract == Presence::absent ? listenerAt(file) : abstract};
}

DisplayFacts waylandDisplay() {
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (name.isEmpty())
        return {};
    const QString file =
        name.startsWith(QLatin1Char('/')) ? name : qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1Char('/') + name;
    return {name, listenerAt(QFile::encodeName(file))};
}

// By a look such as those that notice calls.
FrontWindowTeller frontWindowTeller() {
    const UniqueFd neverCancelled(::eventfd(0, EFD_CLOEXEC));
    DesktopLook look(DesktopSession::ofEnvironment());
    static_cast<void>(look.look(Deadline(Deadline::Clock::now() + lookLimit, neverCancelled.get())));
    const auto source = look.status().source;
    if (!source)
        return FrontWindowTeller::nobody;
    switch (*source) {
    case FrontWindowSource::x11:
        return FrontWindowTeller::x11;
    case FrontWindowSource::sway:
        return FrontWindowTeller::sway;
    case FrontWindowSource::accessibility:
        break;
    }
    return FrontWindowTeller::accessibility;
}

QString nearestExisting(const QString& directory) {
    QString path = QFileInfo(directory).absoluteFilePath();
    while (!QFileInfo::exists(path) && path.size() > 1)
        path = QFileInfo(path).path();
    return path;
}

QString systemText(int number) {
    return QString::fromStdString(std::generic_category().message(number));
}

// Where a file system has no files without a name.
UniqueFd vanishingFile(const QByteArray& directory) {
    QByteArray name = directory + "/.corvane-XXXXXX";
    UniqueFd file(::mkostemp(name.data(), O_CLOEXEC));
    if (file.get() >= 0)
        ::unlink(name.constData());
    return file;
}

// A file is made and vanishes again: permissions alone do not tell of a read-only or a full disk.
std::optional<QString> writeError(const QByteArray& directory) {
    UniqueFd file(::open(directory.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file.get() < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == ENOENT))
        file = vanishingFile(directory);
    const bool works = file.get() >= 0 && ::write(file.get(), "x", 1) == 1;
    return works ? std::nullopt : std::optional(systemText(errno));
}

KeyringFacts::State stateOf(std::int32_t status) {
    switch (static_cast<KeychainStatus>(status)) {
    case KeychainStatus::noSessionBus:
    case KeychainStatus::noService:
        return KeyringFacts::State::absent;
    case KeychainStatus::locked:
        return KeyringFacts::State::locked;
    case KeychainStatus::timedOut:
        return KeyringFacts::State::noAnswer;
    case KeychainStatus::noKeyring:
    case KeychainStatus::failed:
        break;
    }
    return KeyringFacts::State::failed;
}

} // namespace

KeyringFacts LinuxMachineProbe::keyring() {
    try {
        static_cast<void>(KeychainTokenStore(busLimit).hasHuggingFaceToken());
        return {KeyringFacts::State::reachable, {}};
    } catch (const TokenStoreError& error) {
        return {stateOf(error.status()), error.text()};
    }
}

SessionBusFacts LinuxMachineProbe::sessionBus() {
    return probeSessionBus(busLimit);
}

WindowFacts LinuxMachineProbe::windows() {
    return {x11Display(), waylandDisplay(), frontWindowTeller(), qEnvironmentVariable("XDG_CURRENT_DESKTOP")};
}

StorageFacts LinuxMachineProbe::storage(const QString& directory) {
    StorageFacts facts{.directory = nearestExisting(directory), .error = {}};
    const QByteArray path = QFile::encodeName(facts.directory);
    facts.error = writeError(path);
    struct statvfs disk {};
    if (::statvfs(path.constData(), &disk) == 0)
        facts.freeBytes = static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize);
    return facts;
}

std::optional<QString> LinuxMachineProbe::program(const QString& name) {
    const QString path = QStandardPaths::findExecutable(name);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

} // namespace corvane
