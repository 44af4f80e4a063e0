#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"

#include "CorvanePlatform/Linux/Secrets/SecretServiceSession.h"

#include <QStringDecoder>

#include <cstring>
#include <functional>
#include <future>
#include <system_error>
#include <thread>

namespace corvane {

struct KeychainTokenStore::Account {
    const char* name;
    const char* label;
};
const KeychainTokenStore::Account KeychainTokenStore::huggingFace{"HF_TOKEN", "Corvane: Hugging Face token"};
const KeychainTokenStore::Account KeychainTokenStore::notion{"NOTION_TOKEN", "Corvane: Notion token"};

namespace {

class OwnMainContext {
public:
    OwnMainContext() : m_context(g_main_context_new()) { g_main_context_push_thread_default(m_context); }
    OwnMainContext(const OwnMainContext&) = delete;
    OwnMainContext& operator=(const OwnMainContext&) = delete;
    ~OwnMainContext() {
        // What the proxies left to be freed later.
        while (g_main_context_iteration(m_context, FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }

private:
    GMainContext* m_context;
};

// Runs a job on a thread of its own. At the deadline the job is cancelled; one that does not even come back from that
// is left to itself, which is safe as it owns everything it works on.
template<typename Result>
Result within(std::chrono::milliseconds deadline, std::function<Result(GCancellable*)> job) {
    constexpr std::chrono::milliseconds timeToCancel(500);
    const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), UnrefObject());
    std::packaged_task<Result()> task([job = std::move(job), cancellable] {
        const OwnMainContext context;
        return job(cancellable.get());
    });
    auto result = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error& error) {
        throwKeychainError(KeychainStatus::failed, QString::fromUtf8(error.what()));
    }
    if (result.wait_for(deadline) != std::future_status::ready) {
        g_cancellable_cancel(cancellable.get());
        if (result.wait_for(timeToCancel) != std::future_status::ready)
            throwKeychainError(KeychainStatus::timedOut);
    }
    return result.get();
}

void wipe(QByteArray& secret) {
    ::explicit_bzero(secret.data(), static_cast<size_t>(secret.size()));
}

} // namespace

KeychainTokenStore::KeychainTokenStore(std::chrono::milliseconds deadline, KeyringPrompt prompt)
    : m_deadline(deadline), m_prompt(prompt) {}

bool KeychainTokenStore::has(const Account& account) const {
    return within<bool>(m_deadline, [name = account.name, prompt = m_prompt](GCancellable* cancellable) {
        return SecretServiceSession(name, prompt, cancellable).contains();
    });
}

std::optional<QString> KeychainTokenStore::read(const Account& account) const {
    return within<std::optional<QString>>(
        m_deadline, [name = account.name, prompt = m_prompt](GCancellable* cancellable) -> std::optional<QString> {
            auto secret = SecretServiceSession(name, prompt, cancellable).secret();
            if (!secret)
                return std::nullopt;
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            QString token = decoder(*secret);
            wipe(*secret);
            return decoder.hasError() ? std::nullopt : std::optional(token);
        });
}

void KeychainTokenStore::save(const Account& account, const QString& token) const {
    const QString trimmed = token.trimmed();
    if (trimmed.isEmpty())
        return remove(account);
    within<void>(m_deadline,
                 [account, prompt = m_prompt, secret = trimmed.toUtf8()](GCancellable* cancellable) mutable {
                     try {
                         SecretServiceSession(account.name, prompt, cancellable).store(account.label, secret);
                     } catch (const TokenStoreError&) {
                         wipe(secret);
                         throw;
                     }
                     wipe(secret);
                 });
}

void KeychainTokenStore::remove(const Account& account) const {
    within<void>(m_deadline, [name = account.name, prompt = m_prompt](GCancellable* cancellable) {
        SecretServiceSession(name, prompt, cancellable).clear();
    });
}

bool KeychainTokenStore::hasHuggingFaceToken() {
    return has(huggingFace);
}

std::optional<QString> KeychainTokenStore::readHuggingFaceToken() {
    return read(huggingFace);
}

void KeychainTokenStore::saveHuggingFaceToken(const QString& token) {
    save(huggingFace, token);
}

void KeychainTokenStore::deleteHuggingFaceToken() {
    remove(huggingFace);
}

bool KeychainTokenStore::hasNotionToken() {
    return has(notion);
}

std::optional<QString> KeychainTokenStore::readNotionToken() {
    return read(notion);
}

void KeychainTokenStore::saveNotionToken(const QString& token) {
    save(notion, token);
}

void KeychainTokenStore::deleteNotionToken() {
    remove(notion);
}

} // namespace corvane
