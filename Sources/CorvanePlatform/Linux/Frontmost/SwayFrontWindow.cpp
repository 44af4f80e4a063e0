#include "CorvanePlatform/Linux/Frontmost/SwayFrontWindow.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds patience{300};
constexpr std::chrono::seconds rest{10};
constexpr std::uint32_t maximumTreeBytes = 8 * 1024 * 1024;

constexpr std::uint32_t getTree = 4;
struct Header {
    char magic[6];
    std::uint32_t bytes;
    std::uint32_t type;
} __attribute__((packed));

UniqueFd connectTo(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return {};
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // A local socket connects at once or, if too many wait for the compositor already, not at all.
    if (!socket || ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    return socket;
}

std::optional<QByteArray> receive(int socket, std::size_t count, const Deadline& deadline) {
    QByteArray bytes(static_cast<qsizetype>(count), Qt::Uninitialized);
    for (std::size_t done = 0; done < count;) {
        if (!deadline.awaitReady(socket, POLLIN))
            return std::nullopt;
        const ssize_t got = ::recv(socket, bytes.data() + done, count - done, 0);
        if (got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR))
            return std::nullopt;
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return bytes;
}

std::optional<QByteArray> askForTree(const QByteArray& path, const Deadline& deadline) {
    const UniqueFd socket = connectTo(path);
    const Header question{.magic = {'i', '3', '-', 'i', 'p', 'c'}, .bytes = 0, .type = getTree};
    if (!socket || ::send(socket.get(), &question, sizeof question, MSG_NOSIGNAL) != ssize_t{sizeof question})
        return std::nullopt;
    const auto start = receive(socket.get(), sizeof(Header), deadline);
    if (!start)
        return std::nullopt;
    Header answer{};
    std::memcpy(&answer, start->constData(), sizeof answer);
    if (std::memcmp(answer.magic, question.magic, sizeof answer.magic) != 0 || answer.bytes > maximumTreeBytes)
        return std::nullopt;
    return receive(socket.get(), answer.bytes, deadline);
}

std::optional<QString> textOf(const JsonObject& object, const char* key) {
    const auto value = object.optional(key);
    return value ? std::optional(value->string()) : std::nullopt;
}

// The child that has or had the focus last stands first in `focus`.
std::optional<JsonObject> focusedChild(const JsonObject& node) {
    const auto focus = node.optional("focus");
    if (!focus)
        return std::nullopt;
    const auto order = focus->array();
    if (order.empty())
        return std::nullopt;
    for (const char* key : {"nodes", "floating_nodes"})
        if (const auto children = node.optional(key))
            for (const JsonView& child : children->array())
                if (child.object().required("id").integer() == order.front().integer())
                    return child.object();
    return std::nullopt;
}

FrontWindow windowOf(const JsonObject& node) {
    FrontWindow window{.source = FrontWindowSource::sway,
                       .applicationId = textOf(node, "app_id").value_or(QString()),
                       .instance = {},
                       .title = textOf(node, "name"),
                       .processIdentifier = node.required("pid").integer(),
                       .identity = QStringLiteral("sway:%1").arg(node.required("id").integer())};
    if (const auto x11 = node.optional("window_properties")) {
        window.applicationId = textOf(x11->object(), "class").value_or(QString());
        window.instance = textOf(x11->object(), "instance").value_or(QString());
    }
    return window;
}

} // namespace

FrontWindowReading frontWindowOfSwayTree(const QByteArray& json) {
    const JsonDocument document(json);
    JsonObject node = document.root().object();
    while (auto child = focusedChild(node))
        node = *child;
    // An empty workspace has the focus itself, and is no window.
    if (!node.required("focused").boolean() || !node.optional("pid"))
        return {.outcome = FrontWindowReading::Outcome::nothing};
    return {.outcome = FrontWindowReading::Outcome::window, .window = windowOf(node)};
}

SwayFrontWindow::SwayFrontWindow(QByteArray socketPath) : m_socketPath(std::move(socketPath)) {}

FrontWindowReading SwayFrontWindow::read(const Deadline& deadline) {
    if (m_socketPath.isEmpty() || Deadline::Clock::now() < m_nextAttempt)
        return {};
    if (const auto tree = askForTree(m_socketPath, deadline.within(patience))) {
        try {
            return frontWindowOfSwayTree(*tree);
        } catch (const JsonError& error) {
            qWarning("The compositor's tree of windows cannot be read: %s", error.what());
        }
    }
    m_nextAttempt = Deadline::Clock::now() + rest;
    return {};
}

} // namespace corvane
