#include "CorvaneApp/Views/Window/X11Screen.h"

#include <QGuiApplication>

namespace corvane {

namespace {

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

std::optional<X11Screen> X11Screen::current() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const int number = screenNumber();
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return X11Screen(connection, screens.data->root, number);
}

xcb_atom_t X11Screen::atom(const QByteArray& name) const {
    const auto cookie = xcb_intern_atom(m_connection, 1, static_cast<std::uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace corvane
