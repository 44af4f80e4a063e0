#include "CorvaneApp/Shell/WindowActivation.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

namespace corvane {

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto cookie = xcb_query_tree(connection, window);
    const std::unique_ptr<xcb_query_tree_reply_t, Free> reply(xcb_query_tree_reply(connection, cookie, nullptr));
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}

// The time of the user's click, in the X server's milliseconds, from an id of the startup notification protocol.
std::optional<std::uint32_t> timeOf(const QString& startupID) {
    static const QRegularExpression pattern(QStringLiteral("_TIME(\\d+)$"));
    bool isNumber = false;
    const uint time = pattern.match(startupID).captured(1).toUInt(&isNumber);
    return isNumber ? std::optional<std::uint32_t>(time) : std::nullopt;
}

void send(xcb_connection_t* connection, xcb_window_t root, const xcb_client_message_event_t& event,
          std::uint32_t mask) {
    xcb_send_event(connection, 0, root, mask, reinterpret_cast<const char*>(&event));
}

// _NET_ACTIVE_WINDOW of the extended window manager hints: an application (1) asks, because of that click.
void raise(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window, std::uint32_t time) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(connection, "_NET_ACTIVE_WINDOW");
    event.data.data32[0] = 1;
    event.data.data32[1] = time;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(connection, "_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL, 32, 1, &time);
    send(connection, root, event, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
}

// Ends the desktop's busy pointer: "remove: ID=..." in messages of 20 bytes, the last with a zero byte.
void endStartup(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window, const QString& startupID) {
    QByteArray text = startupID.toUtf8();
    text = "remove: ID=\"" + text.replace('\\', "\\\\").replace('"', "\\\"") + '"';
    text.append('\0');
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype piece = sizeof event.data.data8;
    for (qsizetype i = 0; i < text.size(); i += piece) {
        const qsizetype size = std::min(piece, text.size() - i);
        std::memset(event.data.data8, 0, piece);
        std::memcpy(event.data.data8, text.constData() + i, static_cast<std::size_t>(size));
        send(connection, root, event, XCB_EVENT_MASK_PROPERTY_CHANGE);
        event.type = atom(connection, "_NET_STARTUP_INFO");
    }
}

} // namespace

void prepareActivation(const StartRequest& request) {
    // Where the toolkit looks for it when a window asks to be activated.
    if (!request.activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", request.activationToken.toUtf8());
}

void completeActivation(QWindow& window, const StartRequest& request) {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || request.startupID.isEmpty())
        return;
    xcb_connection_t* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = rootOf(connection, id);
    if (const auto time = timeOf(request.startupID))
        raise(connection, root, id, *time);
    endStartup(connection, root, id, request.startupID);
    xcb_flush(connection);
}

} // namespace corvane
