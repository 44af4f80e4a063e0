// Shows an empty X11 window of a given instance, class and title until it is ended: the client of a call service, as
// far as a desktop can tell.
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t result = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    std::free(reply);
    return result;
}

void setText(xcb_connection_t* connection, xcb_window_t window, const char* property, const char* type,
             const std::string& text) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(connection, property), atom(connection, type),
                        8, static_cast<std::uint32_t>(text.size()), text.data());
}

} // namespace

int main(int argc, char** argv) {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    if (argc < 4 || xcb_connection_has_error(connection) != 0) {
        std::fprintf(stderr, "ShowWindow INSTANCE CLASS TITLE [old], on a display\n");
        return 1;
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    // XWayland shows only what has something painted in it.
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL, &screen->white_pixel);
    setText(connection, window, "WM_CLASS", "STRING", std::string(argv[1]) + '\0' + argv[2] + '\0');
    // Old programs know nothing of _NET_WM_NAME.
    if (argc > 4)
        setText(connection, window, "WM_NAME", "STRING", argv[3]);
    else
        setText(connection, window, "_NET_WM_NAME", "UTF8_STRING", argv[3]);
    // As of every program that wants the focus (ICCCM 4.1.2.4).
    const std::uint32_t hints[9] = {1, 1};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9, hints);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    while (xcb_generic_event_t* const event = xcb_wait_for_event(connection))
        std::free(event);
    return 0;
}
