#include "CorvanePlatform/Linux/Bus/SessionBus.h"

#include <QByteArray>

#include <unistd.h>

namespace corvane {

namespace {

// Whether a bus is named or lies where it should. Without one GLib would start one, which nobody ends again and which
// nothing is on.
bool isSessionBusKnown() {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return !address.startsWith("autolaunch:");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    return runtime.startsWith('/') && ::access((runtime + "/bus").constData(), F_OK) == 0;
}

} // namespace

OwnMainContext::OwnMainContext() : m_context(g_main_context_new()) {
    g_main_context_push_thread_default(m_context);
}

OwnMainContext::~OwnMainContext() {
    // What the proxies left to be freed later.
    while (g_main_context_iteration(m_context, FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(m_context);
    g_main_context_unref(m_context);
}

GObjectPointer<GDBusConnection> connectToSessionBus(GCancellable* cancellable) {
    GObjectPointer<GDBusConnection> connection;
    if (isSessionBusKnown())
        connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
    // GLib would otherwise end the whole process, a recording included, when the bus goes away.
    if (connection)
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

} // namespace corvane
