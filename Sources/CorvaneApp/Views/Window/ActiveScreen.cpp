#include "CorvaneApp/Views/Window/ActiveScreen.h"

#include "CorvaneApp/Views/Window/X11Screen.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace corvane {

namespace {

xcb_window_t activeWindow(const X11Screen& screen) {
    const xcb_atom_t property = screen.atom("_NET_ACTIVE_WINDOW");
    if (property == XCB_ATOM_NONE)
        return XCB_WINDOW_NONE;
    const auto asked = xcb_get_property(screen.connection(), 0, screen.root(), property, XCB_ATOM_WINDOW, 0, 1);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(screen.connection(), asked, nullptr),
                                                   &std::free);
    xcb_window_t window = XCB_WINDOW_NONE;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) >= int{sizeof window})
        std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    return window;
}

// In the pixels of the server.
std::optional<QPoint> activeWindowCentre() {
    const auto screen = X11Screen::current();
    const xcb_window_t window = screen ? activeWindow(*screen) : xcb_window_t{XCB_WINDOW_NONE};
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    xcb_connection_t* connection = screen->connection();
    const auto sizeAsked = xcb_get_geometry(connection, window);
    const auto placeAsked = xcb_translate_coordinates(connection, window, screen->root(), 0, 0);
    const XcbReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, sizeAsked, nullptr), &std::free);
    const XcbReply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection, placeAsked, nullptr), &std::free);
    if (!size || !place) // gone in the meantime
        return std::nullopt;
    return QPoint(place->dst_x + size->width / 2, place->dst_y + size->height / 2);
}

// The toolkit scales the size of a screen and leaves its place as the server has it.
QRect pixelsOf(const QScreen& screen) {
    return {screen.geometry().topLeft(), (QSizeF(screen.geometry().size()) * screen.devicePixelRatio()).toSize()};
}

} // namespace

std::size_t screenShowing(const std::optional<QPoint>& point, const std::vector<QRect>& screens) {
    if (!point)
        return 0;
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&](const QRect& screen) { return screen.contains(*point); });
    return found == screens.end() ? 0 : static_cast<std::size_t>(std::distance(screens.begin(), found));
}

QScreen* activeScreen() {
    const QList<QScreen*> screens = QGuiApplication::screens(); // the primary one first
    if (screens.isEmpty())
        return nullptr;
    std::vector<QRect> areas;
    areas.reserve(static_cast<std::size_t>(screens.size()));
    for (const QScreen* screen : screens)
        areas.push_back(pixelsOf(*screen));
    return screens[static_cast<qsizetype>(screenShowing(activeWindowCentre(), areas))];
}

} // namespace corvane
