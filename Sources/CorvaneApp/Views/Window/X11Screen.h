// The X server that the toolkit draws on, for the questions that the toolkit does not answer. Values borrowed from the
// toolkit's connection; main thread, after the application object.
#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace corvane {

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, decltype(&std::free)>; // as the library hands it over

class X11Screen {
public:
    // Nothing where the toolkit draws on no X server.
    [[nodiscard]] static std::optional<X11Screen> current();

    [[nodiscard]] xcb_connection_t* connection() const { return m_connection; }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    [[nodiscard]] int number() const { return m_number; }
    // XCB_ATOM_NONE if nobody has used the name yet.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name) const;

private:
    X11Screen(xcb_connection_t* connection, xcb_window_t root, int number)
        : m_connection(connection), m_root(root), m_number(number) {}

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    int m_number;
};

} // namespace corvane
