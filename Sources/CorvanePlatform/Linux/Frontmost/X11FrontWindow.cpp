#include "CorvanePlatform/Linux/Frontmost/X11FrontWindow.h"

#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QList>

#include <sys/eventfd.h>
#include <xcb/res.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <span>
#include <thread>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds patience{300};
constexpr std::chrono::seconds rest{10};
constexpr std::uint32_t maximumWords = 1024; // of a property: a title of 4 KiB tells enough
constexpr int maximumAncestors = 32;
constexpr std::size_t maximumTopLevels = 64;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); } // NOLINT: xcb allocates with malloc
};
template<typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

QByteArray bytesOf(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply)), xcb_get_property_value_length(reply)};
}

xcb_window_t windowIn(const ReplyPointer<xcb_get_property_reply_t>& reply) {
    xcb_window_t window = XCB_WINDOW_NONE;
    if (reply && reply->format == 32 && ::xcb_get_property_value_length(reply.get()) >= int{sizeof window})
        std::memcpy(&window, ::xcb_get_property_value(reply.get()), sizeof window);
    return window;
}

} // namespace

// An open connection with what was asked of the server once.
class X11FrontWindow::Session {
public:
    // Blocks as long as the server does. Nothing if there is no server, or none that takes us.
    static std::unique_ptr<Session> open(const QByteArray& display);
    ~Session() { ::xcb_disconnect(m_connection); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] FrontWindowReading read(const Deadline& deadline);
    [[nodiscard]] bool isUsable() const { return !m_isSilent && ::xcb_connection_has_error(m_connection) == 0; }

private:
    Session(xcb_connection_t* connection, xcb_window_t root) : m_connection(connection), m_root(root) {}
    [[nodiscard]] xcb_atom_t atom(const char* name);
    template<typename Reply>
    [[nodiscard]] ReplyPointer<Reply> await(unsigned sequence, const Deadline& deadline);
    [[nodiscard]] unsigned askProperty(xcb_window_t window, xcb_atom_t property);
    [[nodiscard]] unsigned askProcess(xcb_window_t window);
    [[nodiscard]] std::optional<xcb_window_t> frontWindow(const Deadline& deadline);
    [[nodiscard]] xcb_window_t focusedWindow(const Deadline& deadline);
    [[nodiscard]] xcb_window_t topmostWindow(const Deadline& deadline);
    [[nodiscard]] bool hasClass(xcb_window_t window, const Deadline& deadline);
    void dropEvents();

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_atom_t m_activeWindow = XCB_ATOM_NONE;
    xcb_atom_t m_managerCheck = XCB_ATOM_NONE;
    xcb_atom_t m_utf8Title = XCB_ATOM_NONE;
    bool m_hasResourceExtension = false;
    bool m_isSilent = false;
};

// Shared with the thread that opens: libxcb cannot be told to give up, so that one which hangs there is left behind,
// and lets go of the connection when the server wakes up or dies.
struct X11FrontWindow::Opening {
    std::mutex mutex;
    std::unique_ptr<Session> session;
    UniqueFd finished{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
};

std::unique_ptr<X11FrontWindow::Session> X11FrontWindow::Session::open(const QByteArray& display) {
    int screenNumber = 0;
    xcb_connection_t* const connection = ::xcb_connect(display.constData(), &screenNumber);
    if (::xcb_connection_has_error(connection) != 0) {
        ::xcb_disconnect(connection);
        return nullptr;
    }
    auto screens = ::xcb_setup_roots_iterator(::xcb_get_setup(connection));
    for (; screenNumber > 0 && screens.rem > 1; --screenNumber)
        ::xcb_screen_next(&screens);
    std::unique_ptr<Session> session(new Session(connection, screens.data->root)); // the constructor is private
    session->m_activeWindow = session->atom("_NET_ACTIVE_WINDOW");
    session->m_managerCheck = session->atom("_NET_SUPPORTING_WM_CHECK");
    session->m_utf8Title = session->atom("_NET_WM_NAME");
    const auto* const extension = ::xcb_get_extension_data(connection, &xcb_res_id);
    session->m_hasResourceExtension = extension && extension->present != 0;
    return session->isUsable() ? std::move(session) : nullptr;
}

xcb_atom_t X11FrontWindow::Session::atom(const char* name) {
    const auto cookie = ::xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const ReplyPointer<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

// Nothing if the server answers with an error, such as for a window that is gone, or not in time.
template<typename Reply>
ReplyPointer<Reply> X11FrontWindow::Session::await(unsigned sequence, const Deadline& deadline) {
    if (sequence == 0)
        return nullptr;
    ::xcb_flush(m_connection);
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (::xcb_poll_for_reply(m_connection, sequence, &reply, &error) == 0) {
        if (!deadline.awaitReady(::xcb_get_file_descriptor(m_connection), POLLIN)) {
            m_isSilent = true;
            return nullptr;
        }
    }
    const ReplyPointer<xcb_generic_error_t> freed(error);
    return ReplyPointer<Reply>(static_cast<Reply*>(reply));
}

unsigned X11FrontWindow::Session::askProperty(xcb_window_t window, xcb_atom_t property) {
    return ::xcb_get_property(m_connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, maximumWords).sequence;
}

// _NET_WM_PID is what the program thinks of itself, and wrong in a process-id namespace; the server knows its client.
unsigned X11FrontWindow::Session::askProcess(xcb_window_t window) {
    if (!m_hasResourceExtension)
        return 0;
    const xcb_res_client_id_spec_t wanted{.client = window, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return ::xcb_res_query_client_ids(m_connection, 1, &wanted).sequence;
}

// Nothing if the server does not tell. A window manager says which window is active, or that none is; without one the
// focus tells, and where that follows the pointer the window on top does.
std::optional<xcb_window_t> X11FrontWindow::Session::frontWindow(const Deadline& deadline) {
    const unsigned activeAsked = askProperty(m_root, m_activeWindow);
    const unsigned managerAsked = askProperty(m_root, m_managerCheck);
    const auto active = await<xcb_get_property_reply_t>(activeAsked, deadline);
    const auto manager = await<xcb_get_property_reply_t>(managerAsked, deadline);
    if (!active || !manager)
        return std::nullopt;
    const bool namesManager = manager->type != XCB_ATOM_NONE;
    // A manager that was killed leaves both properties behind, but not the window that stands for it.
    const bool isManaged =
        namesManager
            ? windowIn(await<xcb_get_property_reply_t>(askProperty(windowIn(manager), m_managerCheck), deadline)) ==
                  windowIn(manager)
            : active->type != XCB_ATOM_NONE;
    if (isManaged)
        return windowIn(active);
    const xcb_window_t focused = focusedWindow(deadline);
    return focused != XCB_WINDOW_NONE ? focused : topmostWindow(deadline);
}

// The focus may lie on a part of the application's window.
xcb_window_t X11FrontWindow::Session::focusedWindow(const Deadline& deadline) {
    const auto focus = await<xcb_get_input_focus_reply_t>(::xcb_get_input_focus(m_connection).sequence, deadline);
    xcb_window_t window = focus ? focus->focus : xcb_window_t{XCB_INPUT_FOCUS_NONE};
    for (int i = 0; i < maximumAncestors; ++i) {
        if (window == XCB_INPUT_FOCUS_NONE || window == XCB_INPUT_FOCUS_POINTER_ROOT || window == m_root)
            break;
        if (hasClass(window, deadline))
            return window;
        const auto tree = await<xcb_query_tree_reply_t>(::xcb_query_tree(m_connection, window).sequence, deadline);
        window = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
    }
    return XCB_WINDOW_NONE;
}

// Windows that a window manager would leave alone are menus and the like.
xcb_window_t X11FrontWindow::Session::topmostWindow(const Deadline& deadline) {
    const auto tree = await<xcb_query_tree_reply_t>(::xcb_query_tree(m_connection, m_root).sequence, deadline);
    if (!tree)
        return XCB_WINDOW_NONE;
    const std::span<const xcb_window_t> bottomToTop(
        ::xcb_query_tree_children(tree.get()), static_cast<std::size_t>(::xcb_query_tree_children_length(tree.get())));
    const auto top = bottomToTop.last(std::min(bottomToTop.size(), maximumTopLevels));
    for (auto window = top.rbegin(); window != top.rend(); ++window) {
        const auto attributes = await<xcb_get_window_attributes_reply_t>(
            ::xcb_get_window_attributes(m_connection, *window).sequence, deadline);
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->override_redirect == 0 &&
            hasClass(*window, deadline))
            return *window;
    }
    return XCB_WINDOW_NONE;
}

bool X11FrontWindow::Session::hasClass(xcb_window_t window, const Deadline& deadline) {
    const auto reply = await<xcb_get_property_reply_t>(askProperty(window, XCB_ATOM_WM_CLASS), deadline);
    return !bytesOf(reply.get()).isEmpty();
}

FrontWindowReading X11FrontWindow::Session::read(const Deadline& deadline) {
    dropEvents();
    const auto inFront = frontWindow(deadline);
    if (!inFront || !isUsable())
        return {};
    const xcb_window_t window = *inFront;
    if (window == XCB_WINDOW_NONE)
        return {.outcome = FrontWindowReading::Outcome::nothing};

    const unsigned classAsked = askProperty(window, XCB_ATOM_WM_CLASS);
    const unsigned titleAsked = askProperty(window, m_utf8Title);
    const unsigned oldTitleAsked = askProperty(window, XCB_ATOM_WM_NAME);
    const unsigned processAsked = askProcess(window);
    const auto classReply = await<xcb_get_property_reply_t>(classAsked, deadline);
    const auto titleReply = await<xcb_get_property_reply_t>(titleAsked, deadline);
    const auto oldTitleReply = await<xcb_get_property_reply_t>(oldTitleAsked, deadline);
    const auto processReply = await<xcb_res_query_client_ids_reply_t>(processAsked, deadline);
    if (!isUsable() || !classReply)
        return {};

    FrontWindowReading reading{.outcome = FrontWindowReading::Outcome::window};
    FrontWindow& front = reading.window;
    front.identity = QStringLiteral("x11:%1").arg(window);
    const QList<QByteArray> names = bytesOf(classReply.get()).split('\0');
    front.instance = QString::fromUtf8(names.value(0));
    front.applicationId = QString::fromUtf8(names.value(1));
    const QByteArray title = bytesOf(titleReply.get());
    const QByteArray oldTitle = bytesOf(oldTitleReply.get());
    if (!title.isEmpty())
        front.title = QString::fromUtf8(title);
    else if (!oldTitle.isEmpty())
        front.title =
            oldTitleReply->type == XCB_ATOM_STRING ? QString::fromLatin1(oldTitle) : QString::fromUtf8(oldTitle);
    if (processReply) {
        for (auto ids = ::xcb_res_query_client_ids_ids_iterator(processReply.get()); ids.rem > 0;
             ::xcb_res_client_id_value_next(&ids))
            if (::xcb_res_client_id_value_value_length(ids.data) > 0)
                front.processIdentifier = *::xcb_res_client_id_value_value(ids.data);
    }
    return reading;
}

// Nobody asked for events, but some come unasked, and libxcb would keep them all.
void X11FrontWindow::Session::dropEvents() {
    while (const ReplyPointer<xcb_generic_event_t> event{::xcb_poll_for_event(m_connection)}) {
    }
}

X11FrontWindow::X11FrontWindow(QByteArray display) : m_display(std::move(display)) {}

X11FrontWindow::~X11FrontWindow() = default;

FrontWindowReading X11FrontWindow::read(const Deadline& deadline) {
    if (m_display.isEmpty() || !ensureSession(deadline))
        return {};
    auto reading = m_session->read(deadline.within(patience));
    if (!m_session->isUsable()) {
        m_session.reset();
        leaveAlone();
    }
    return reading;
}

bool X11FrontWindow::ensureSession(const Deadline& deadline) {
    if (m_session)
        return true;
    const bool isNew = !m_opening;
    if (isNew) {
        if (Deadline::Clock::now() < m_nextOpening)
            return false;
        startOpening();
    }
    // Only the look that began it waits for it: the others find it done, or go on without.
    const Deadline wait = deadline.within(isNew ? patience : std::chrono::milliseconds(0));
    if (!m_opening || !wait.awaitReady(m_opening->finished.get(), POLLIN))
        return false;
    {
        const std::scoped_lock lock(m_opening->mutex);
        m_session = std::move(m_opening->session);
    }
    m_opening.reset();
    if (!m_session)
        leaveAlone();
    return m_session != nullptr;
}

void X11FrontWindow::startOpening() {
    m_opening = std::make_shared<Opening>();
    std::thread([opening = m_opening, display = m_display] {
        auto session = Session::open(display);
        const std::scoped_lock lock(opening->mutex);
        opening->session = std::move(session);
        ::eventfd_write(opening->finished.get(), 1);
    }).detach();
}

void X11FrontWindow::leaveAlone() {
    m_nextOpening = Deadline::Clock::now() + rest;
}

} // namespace corvane
