#include "CorvanePlatform/Linux/Secrets/SecretServiceSession.h"

#include "CorvaneContract/Text/UserText.h"

namespace corvane {

namespace {

constexpr const char* serviceAttribute = "Corvane";

const SecretSchema& schema() {
    static const SecretSchema result = [] {
        SecretSchema made{};
        made.name = "org.corvane.Token";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return result;
}

// What libsecret reports, freed with its owner.
class Failure {
public:
    Failure() = default;
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;
    ~Failure() { g_clear_error(&m_error); }

    [[nodiscard]] GError** out() { return &m_error; }

    void throwIfSet() const {
        if (!m_error)
            return;
        if (g_dbus_error_is_remote_error(m_error))
            g_dbus_error_strip_remote_error(m_error);
        throwKeychainError(status(), QString::fromUtf8(m_error->message));
    }

private:
    [[nodiscard]] bool is(GQuark domain, std::initializer_list<int> codes) const {
        for (const int code : codes) {
            if (g_error_matches(m_error, domain, code))
                return true;
        }
        return false;
    }

    [[nodiscard]] KeychainStatus status() const {
        if (is(G_IO_ERROR, {G_IO_ERROR_CANCELLED, G_IO_ERROR_TIMED_OUT}) ||
            is(G_DBUS_ERROR, {G_DBUS_ERROR_NO_REPLY, G_DBUS_ERROR_TIMEOUT, G_DBUS_ERROR_TIMED_OUT}))
            return KeychainStatus::timedOut;
        if (is(SECRET_ERROR, {SECRET_ERROR_IS_LOCKED}))
            return KeychainStatus::locked;
        // The bus starts the service on demand; a service that cannot be started is none.
        if (is(G_DBUS_ERROR,
               {G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER, G_DBUS_ERROR_SPAWN_EXEC_FAILED,
                G_DBUS_ERROR_SPAWN_FORK_FAILED, G_DBUS_ERROR_SPAWN_CHILD_EXITED, G_DBUS_ERROR_SPAWN_CHILD_SIGNALED,
                G_DBUS_ERROR_SPAWN_FAILED, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND}))
            return KeychainStatus::noService;
        return KeychainStatus::failed;
    }

    GError* m_error = nullptr;
};

GObjectPointer<GDBusConnection> connectToBus(GCancellable* cancellable) {
    auto connection = connectToSessionBus(cancellable);
    if (!connection)
        throwKeychainError(g_cancellable_is_cancelled(cancellable) ? KeychainStatus::timedOut
                                                                   : KeychainStatus::noSessionBus);
    return connection;
}

} // namespace

void throwKeychainError(KeychainStatus status, const QString& detail) {
    const auto text = [&] {
        switch (status) {
        case KeychainStatus::noSessionBus:
            return UserText::tr("There is no desktop session bus, so the keyring cannot be reached.");
        case KeychainStatus::noService:
            return UserText::tr("No keyring service is running. Install or start one, such as GNOME Keyring or "
                                "KWallet, and try again.");
        case KeychainStatus::locked:
            return UserText::tr("The keyring is locked. Unlock it and try again.");
        case KeychainStatus::noKeyring:
            return UserText::tr("There is no keyring to save the token in. Create one and try again.");
        case KeychainStatus::timedOut:
            return UserText::tr("The keyring service did not answer in time.");
        case KeychainStatus::failed:
            break;
        }
        return UserText::tr("The keyring service failed: %1").arg(detail);
    }();
    throw TokenStoreError(static_cast<std::int32_t>(status), text);
}

SecretServiceSession::SecretServiceSession(const char* account, KeyringPrompt prompt, GCancellable* cancellable)
    : m_prompt(prompt),
      m_cancellable(cancellable),
      m_attributes(secret_attributes_build(&schema(), "service", serviceAttribute, "account", account, nullptr)),
      m_connection(connectToBus(cancellable)) {
    Failure failure;
    // Of its own: the shared one of the library belongs to the thread that asked first.
    m_service.reset(
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancellable, failure.out()));
    failure.throwIfSet();
}

SecretServiceSession::Presence SecretServiceSession::search() {
    Failure failure;
    GList* items = secret_service_search_sync(m_service.get(), &schema(), m_attributes.get(), SECRET_SEARCH_ALL,
                                              m_cancellable, failure.out());
    failure.throwIfSet();
    Presence presence = Presence::absent;
    for (GList* item = items; item; item = item->next) {
        const bool locked = secret_item_get_locked(static_cast<SecretItem*>(item->data)) != FALSE;
        presence = locked || presence == Presence::locked ? Presence::locked : Presence::unlocked;
    }
    g_list_free_full(items, g_object_unref);
    return presence;
}

GObjectPointer<SecretCollection> SecretServiceSession::openDefaultCollection() {
    Failure failure;
    GObjectPointer<SecretCollection> collection(secret_collection_for_alias_sync(
        m_service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, m_cancellable, failure.out()));
    failure.throwIfSet();
    if (!collection || !secret_collection_get_locked(collection.get()))
        return collection;
    if (m_prompt == KeyringPrompt::never)
        throwKeychainError(KeychainStatus::locked);
    GList object{collection.get(), nullptr, nullptr};
    const int unlocked = secret_service_unlock_sync(m_service.get(), &object, m_cancellable, nullptr, failure.out());
    failure.throwIfSet();
    if (unlocked == 0)
        throwKeychainError(KeychainStatus::locked);
    return collection;
}

bool SecretServiceSession::contains() {
    Presence presence = search();
    if (presence == Presence::unlocked)
        return true;
    if (openDefaultCollection())
        presence = search();
    if (presence == Presence::locked)
        throwKeychainError(KeychainStatus::locked);
    return presence == Presence::unlocked;
}

std::optional<QByteArray> SecretServiceSession::secret() {
    if (!contains())
        return std::nullopt;
    Failure failure;
    SecretValue* value =
        secret_service_lookup_sync(m_service.get(), &schema(), m_attributes.get(), m_cancellable, failure.out());
    failure.throwIfSet();
    if (!value)
        return std::nullopt;
    gsize size = 0;
    const gchar* bytes = secret_value_get(value, &size);
    QByteArray result(bytes, static_cast<qsizetype>(size));
    secret_value_unref(value); // wipes its copy
    return result;
}

void SecretServiceSession::store(const char* label, const QByteArray& secret) {
    // Without a default collection libsecret would have the desktop ask for the password of a new one.
    if (!openDefaultCollection() && m_prompt == KeyringPrompt::never)
        throwKeychainError(KeychainStatus::noKeyring);
    Failure failure;
    SecretValue* value = secret_value_new(secret.constData(), secret.size(), "text/plain");
    // An item of the same attributes is replaced.
    secret_service_store_sync(m_service.get(), &schema(), m_attributes.get(), SECRET_COLLECTION_DEFAULT, label, value,
                              m_cancellable, failure.out());
    secret_value_unref(value);
    failure.throwIfSet();
}

void SecretServiceSession::clear() {
    if (!contains())
        return;
    Failure failure;
    secret_service_clear_sync(m_service.get(), &schema(), m_attributes.get(), m_cancellable, failure.out());
    failure.throwIfSet();
}

} // namespace corvane
