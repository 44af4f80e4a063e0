// One conversation with the Secret Service about one item: a connection to the session bus and what is asked
// over it. All calls block until they are cancelled; confined to one thread, which has its own GMainContext.
#pragma once

#include "CorvanePlatform/Linux/Bus/SessionBus.h"
#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"

#include <QByteArray>

#include <libsecret/secret.h>

#include <memory>
#include <vector>

namespace corvane {

class SecretServiceSession {
public:
    // Throws TokenStoreError, as all of this class does. `account` names the item; `cancellable` outlives the session.
    SecretServiceSession(const char* account, KeyringPrompt prompt, GCancellable* cancellable);

    // Whether there is an item. A locked keyring hides its items or shows them locked: either throws, or is unlocked
    // first if prompts are allowed.
    [[nodiscard]] bool contains();
    [[nodiscard]] std::optional<QByteArray> secret();
    void store(const char* label, const QByteArray& secret);
    void clear();

private:
    struct UnrefAttributes {
        void operator()(GHashTable* attributes) const { g_hash_table_unref(attributes); }
    };
    enum class Presence { absent, unlocked, locked };

    [[nodiscard]] Presence search();
    // The default collection, unlocked; nothing if there is none.
    [[nodiscard]] GObjectPointer<SecretCollection> openDefaultCollection();

    KeyringPrompt m_prompt;
    GCancellable* m_cancellable;
    std::unique_ptr<GHashTable, UnrefAttributes> m_attributes;
    GObjectPointer<GDBusConnection> m_connection;
    GObjectPointer<SecretService> m_service;
};

[[noreturn]] void throwKeychainError(KeychainStatus status, const QString& detail = {});

} // namespace corvane
