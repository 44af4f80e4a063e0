#include "CorvaneApp/Views/Window/Compositing.h"

#include <QByteArray>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace corvane {

namespace {

template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0)
        return 0;
    std::free(host);
    return screen;
}

} // namespace

// A compositing manager owns the selection that is named after its screen (EWMH, "_NET_WM_CM_Sn").
bool isComposited() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr; // none where the toolkit draws on no screen
    if (!connection)
        return true;
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screenNumber());
    const auto cookie = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.constData());
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto asked = xcb_get_selection_owner(connection, atom->atom);
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, asked, nullptr),
                                                       &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace corvane
