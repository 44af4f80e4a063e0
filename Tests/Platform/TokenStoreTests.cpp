#include "Support/Fakes/FakeTokenStore.h"
#include "Support/PrintQt.h"
#include "Support/PrivateSessionBus.h"
#include "Support/Waiting.h"

#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"

#include <QDir>
#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <libsecret/secret.h>
#include <signal.h>

using namespace corvane;
using std::chrono::milliseconds;

namespace {

struct Memory {
    FakeTokenStore store;
};

struct Keyring {
    Keyring() { bus.startKeyring(PrivateSessionBus::Keyring::unlocked); }
    PrivateSessionBus bus;
    KeychainTokenStore store;
};

template<typename Implementation>
class TokenStoreContract : public testing::Test {};
using Implementations = testing::Types<Memory, Keyring>;
TYPED_TEST_SUITE(TokenStoreContract, Implementations);

// The items of the store's accounts whatever wrote them, through the library as another program would.
class ForeignItems {
public:
    ForeignItems()
        : m_service(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, nullptr, nullptr)) {}
    ForeignItems(const ForeignItems&) = delete;
    ForeignItems& operator=(const ForeignItems&) = delete;
    ~ForeignItems() { g_object_unref(m_service); }

    // The labels of what a search by the two attributes finds.
    [[nodiscard]] std::vector<QString> labels(const char* account) const {
        std::vector<QString> result;
        forEach(account, [&](SecretItem* item) {
            gchar* label = secret_item_get_label(item);
            result.push_back(QString::fromUtf8(label));
            g_free(label);
        });
        return result;
    }
    // Replaces the secrets of what is there.
    void setSecret(const char* account, const QByteArray& bytes) const {
        SecretValue* value = secret_value_new(bytes.constData(), bytes.size(), "text/plain");
        forEach(account,
                [&](SecretItem* item) { EXPECT_TRUE(secret_item_set_secret_sync(item, value, nullptr, nullptr)); });
        secret_value_unref(value);
    }

private:
    void forEach(const char* account, const std::function<void(SecretItem*)>& action) const {
        GHashTable* attributes = g_hash_table_new(g_str_hash, g_str_equal);
        g_hash_table_insert(attributes, const_cast<char*>("service"), const_cast<char*>("Corvane"));
        g_hash_table_insert(attributes, const_cast<char*>("account"), const_cast<char*>(account));
        GList* items = secret_service_search_sync(m_service, nullptr, attributes, SECRET_SEARCH_ALL, nullptr, nullptr);
        for (GList* item = items; item; item = item->next)
            action(static_cast<SecretItem*>(item->data));
        g_list_free_full(items, g_object_unref);
        g_hash_table_unref(attributes);
    }

    SecretService* m_service;
};

// Owns the name of the Secret Service and answers nothing.
class SilentService {
public:
    explicit SilentService(const PrivateSessionBus& bus)
        : m_connection(g_dbus_connection_new_for_address_sync(
              bus.address().toUtf8().constData(),
              static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
              nullptr, nullptr, nullptr)) {
        g_dbus_connection_add_filter(m_connection, swallowCalls, nullptr, nullptr);
        GVariant* reply = g_dbus_connection_call_sync(m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                      "org.freedesktop.DBus", "RequestName",
                                                      g_variant_new("(su)", "org.freedesktop.secrets", 4U), nullptr,
                                                      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        EXPECT_NE(reply, nullptr);
        g_variant_unref(reply);
    }
    SilentService(const SilentService&) = delete;
    SilentService& operator=(const SilentService&) = delete;
    ~SilentService() { g_object_unref(m_connection); }

private:
    static GDBusMessage* swallowCalls(GDBusConnection*, GDBusMessage* message, gboolean incoming, gpointer) {
        if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL)
            return message;
        g_object_unref(message);
        return nullptr;
    }

    GDBusConnection* m_connection;
};

// Every operation throws this status, with a sentence, within the deadline.
void expectEveryCallToFail(KeychainStatus expected, const char* text, milliseconds deadline = milliseconds(2000)) {
    KeychainTokenStore store(deadline);
    const std::vector<std::function<void()>> operations{
        [&] { (void)store.hasHuggingFaceToken(); },
        [&] { (void)store.readNotionToken(); },
        [&] { store.saveHuggingFaceToken(u"new"_s); },
        [&] { store.saveNotionToken(QString()); },
        [&] { store.deleteNotionToken(); },
    };
    for (std::size_t i = 0; i < operations.size(); ++i) {
        QElapsedTimer timer;
        timer.start();
        try {
            operations[i]();
            ADD_FAILURE() << "operation " << i << " succeeded";
        } catch (const TokenStoreError& error) {
            EXPECT_EQ(error.status(), static_cast<std::int32_t>(expected)) << i << ": " << error.what();
            EXPECT_THAT(error.what(), testing::StartsWith(text));
        }
        EXPECT_LT(timer.elapsed(), (deadline + milliseconds(1000)).count()) << i;
    }
}

constexpr const char* lockedText = "The keyring is locked. Unlock it and try again.";

} // namespace

TYPED_TEST(TokenStoreContract, KeepsTwoIndependentTrimmedTokens) {
    TypeParam implementation;
    SecretStoring& store = implementation.store;
    EXPECT_FALSE(store.hasHuggingFaceToken());
    EXPECT_FALSE(store.readHuggingFaceToken());
    store.deleteHuggingFaceToken();
    store.saveHuggingFaceToken(u" \n"_s);
    EXPECT_FALSE(store.hasHuggingFaceToken());

    store.saveHuggingFaceToken(u"  abc\n"_s);
    EXPECT_EQ(store.readHuggingFaceToken(), u"abc"_s);
    EXPECT_TRUE(store.hasHuggingFaceToken());
    EXPECT_FALSE(store.hasNotionToken());
    store.saveNotionToken(u"sécret_1 2"_s);
    store.saveHuggingFaceToken(u"def"_s);
    EXPECT_EQ(store.readHuggingFaceToken(), u"def"_s);
    EXPECT_EQ(store.readNotionToken(), u"sécret_1 2"_s);

    store.saveNotionToken(u"   "_s);
    EXPECT_FALSE(store.hasNotionToken());
    EXPECT_FALSE(store.readNotionToken());
    EXPECT_EQ(store.readHuggingFaceToken(), u"def"_s);
    store.deleteHuggingFaceToken();
    store.deleteHuggingFaceToken();
    EXPECT_FALSE(store.readHuggingFaceToken());
}

TEST(KeychainTokenStore, KeepsOneLabelledItemPerAccountAndReadsNoTokenFromBrokenText) {
    Keyring keyring;
    keyring.store.saveHuggingFaceToken(u"first"_s);
    keyring.store.saveHuggingFaceToken(u"second"_s);
    keyring.store.saveNotionToken(u"third"_s);
    const ForeignItems items;
    EXPECT_THAT(items.labels("HF_TOKEN"), testing::ElementsAre(u"Corvane: Hugging Face token"_s));
    EXPECT_THAT(items.labels("NOTION_TOKEN"), testing::ElementsAre(u"Corvane: Notion token"_s));
    items.setSecret("HF_TOKEN", "\xff\xfe");
    EXPECT_FALSE(keyring.store.readHuggingFaceToken());
    EXPECT_TRUE(keyring.store.hasHuggingFaceToken());
    EXPECT_EQ(keyring.store.readNotionToken(), u"third"_s);
}

TEST(KeychainTokenStore, ALockedKeyringIsNotAnEmptyOne) {
    Keyring keyring;
    keyring.store.saveHuggingFaceToken(u"abc"_s);
    keyring.bus.lockKeyring();
    expectEveryCallToFail(KeychainStatus::locked, lockedText);
    keyring.bus.stopKeyring();
    keyring.bus.startKeyring(PrivateSessionBus::Keyring::neverUnlocked);
    expectEveryCallToFail(KeychainStatus::locked, lockedText);
    keyring.bus.stopKeyring();
    keyring.bus.startKeyring(PrivateSessionBus::Keyring::unlocked);
    EXPECT_EQ(keyring.store.readHuggingFaceToken(), u"abc"_s);
}

TEST(KeychainTokenStore, WithoutAKeyringThereIsNoTokenAndNoPlaceForOne) {
    PrivateSessionBus bus;
    bus.startKeyring(PrivateSessionBus::Keyring::neverUnlocked);
    KeychainTokenStore store;
    EXPECT_FALSE(store.hasHuggingFaceToken());
    store.deleteHuggingFaceToken();
    try {
        store.saveHuggingFaceToken(u"abc"_s);
        ADD_FAILURE() << "saved";
    } catch (const TokenStoreError& error) {
        EXPECT_EQ(error.status(), static_cast<std::int32_t>(KeychainStatus::noKeyring)) << error.what();
    }
}

TEST(KeychainTokenStore, TellsWhatIsMissing) {
    constexpr const char* noBus = "There is no desktop session bus, so the keyring cannot be reached.";
    {
        PrivateSessionBus bus;
        expectEveryCallToFail(KeychainStatus::noService, "No keyring service is running.");
    }
    const std::pair<const char*, QByteArray> before[] = {
        {"DBUS_SESSION_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS")},
        {"XDG_RUNTIME_DIR", qgetenv("XDG_RUNTIME_DIR")}};
    const QTemporaryDir empty;
    qputenv("XDG_RUNTIME_DIR", empty.path().toUtf8());
    for (const char* address : {"unix:path=/nowhere/bus", "nonsense", "unix:", "autolaunch:", ""}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        expectEveryCallToFail(KeychainStatus::noSessionBus, noBus);
    }
    for (const auto& [name, value] : before)
        qunsetenv(name);
    expectEveryCallToFail(KeychainStatus::noSessionBus, noBus);
    for (const auto& [name, value] : before)
        if (!value.isNull())
            qputenv(name, value);
}

TEST(KeychainTokenStore, DoesNotWaitForWhatNeverAnswers) {
    constexpr const char* text = "The keyring service did not answer in time.";
    PrivateSessionBus bus;
    {
        const SilentService service(bus);
        expectEveryCallToFail(KeychainStatus::timedOut, text, milliseconds(200));
    }
    ASSERT_EQ(::kill(static_cast<pid_t>(bus.processID()), SIGSTOP), 0);
    expectEveryCallToFail(KeychainStatus::timedOut, text, milliseconds(200));
    ASSERT_EQ(::kill(static_cast<pid_t>(bus.processID()), SIGCONT), 0);
    expectEveryCallToFail(KeychainStatus::noService, "No keyring service is running.");
}

TEST(KeychainTokenStore, LeavesNoConnectionBehind) {
    Keyring keyring;
    keyring.store.saveNotionToken(u"abc"_s);
    const auto descriptors = [] { return QDir(u"/proc/self/fd"_s).count(); };
    const auto before = descriptors();
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(keyring.store.readNotionToken(), u"abc"_s);
    // A connection is closed by a thread of its own.
    EXPECT_TRUE(waitFor([&] { return descriptors() <= before; })) << descriptors() - before;
}
