#include "CorvaneApp/Views/Window/Compositing.h"

#include "CorvaneApp/Views/Window/X11Screen.h"

namespace corvane {

// A compositing manager owns the selection that is named after its screen (EWMH, "_NET_WM_CM_Sn").
bool isComposited() {
    const auto screen = X11Screen::current();
    if (!screen)
        return true;
    const xcb_atom_t atom = screen->atom("_NET_WM_CM_S" + QByteArray::number(screen->number()));
    if (atom == XCB_ATOM_NONE)
        return false;
    const auto asked = xcb_get_selection_owner(screen->connection(), atom);
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(screen->connection(), asked, nullptr), &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace corvane
