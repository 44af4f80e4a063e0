#include "CorvanePlatform/Linux/Doctor/SessionBusProbe.h"

#include "CorvanePlatform/Linux/Bus/SessionBus.h"

#include <cstring>
#include <system_error>

namespace corvane {

namespace {

constexpr int callLimitMilliseconds = 1000;

struct UnrefVariant {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

constexpr const char* theBus = "org.freedesktop.DBus";

class SessionBusProbe {
public:
    SessionBusProbe(GDBusConnection* connection, GCancellable* cancellable)
        : m_connection(connection), m_cancellable(cancellable) {}

    [[nodiscard]] SessionBusFacts facts() {
        return {.bus = Presence::present,
                .trayHost = flag("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                 "org.kde.StatusNotifierWatcher", "IsStatusNotifierHostRegistered"),
                .notifications = service("org.freedesktop.Notifications"),
                .accessibility = flag("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status", "IsEnabled")};
    }

private:
    // Nothing if there is no answer.
    [[nodiscard]] Variant call(const char* name, const char* path, const char* interface, const char* method,
                               GVariant* arguments, const char* answerType) {
        return Variant(g_dbus_connection_call_sync(m_connection, name, path, interface, method, arguments,
                                                   G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                                   callLimitMilliseconds, m_cancellable, nullptr));
    }

    [[nodiscard]] Presence owned(const char* name) {
        const Variant answer =
            call(theBus, "/org/freedesktop/DBus", theBus, "NameHasOwner", g_variant_new("(s)", name), "(b)");
        if (!answer)
            return Presence::noAnswer;
        gboolean isOwned = FALSE;
        g_variant_get(answer.get(), "(b)", &isOwned);
        return isOwned != FALSE ? Presence::present : Presence::absent;
    }

    // Present also if the bus would start it when it is needed.
    [[nodiscard]] Presence service(const char* name) {
        const Presence running = owned(name);
        if (running != Presence::absent)
            return running;
        const Variant answer = call(theBus, "/org/freedesktop/DBus", theBus, "ListActivatableNames", nullptr, "(as)");
        if (!answer)
            return Presence::noAnswer;
        const Variant names(g_variant_get_child_value(answer.get(), 0));
        for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
            const Variant one(g_variant_get_child_value(names.get(), i));
            if (std::strcmp(g_variant_get_string(one.get(), nullptr), name) == 0)
                return Presence::present;
        }
        return Presence::absent;
    }

    // A boolean property; absent also if nobody has it.
    [[nodiscard]] Presence flag(const char* name, const char* path, const char* interface, const char* property) {
        const Presence running = owned(name);
        if (running != Presence::present)
            return running;
        const Variant answer = call(name, path, "org.freedesktop.DBus.Properties", "Get",
                                    g_variant_new("(ss)", interface, property), "(v)");
        if (!answer)
            return Presence::noAnswer;
        GVariant* content = nullptr;
        g_variant_get(answer.get(), "(v)", &content);
        const Variant value(content);
        const bool isOn = g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
                          g_variant_get_boolean(value.get()) != FALSE;
        return isOn ? Presence::present : Presence::absent;
    }

    GDBusConnection* m_connection;
    GCancellable* m_cancellable;
};

SessionBusFacts everything(Presence presence) {
    return {presence, presence, presence, presence};
}

} // namespace

SessionBusFacts probeSessionBus(std::chrono::milliseconds limit) {
    try {
        return within<SessionBusFacts>(limit, [](GCancellable* cancellable) {
            const auto connection = connectToSessionBus(cancellable);
            if (connection)
                return SessionBusProbe(connection.get(), cancellable).facts();
            return everything(g_cancellable_is_cancelled(cancellable) ? Presence::noAnswer : Presence::absent);
        });
    } catch (const DeadlineError&) {
        return {};
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace corvane
