#include "CorvanePlatform/Linux/Secrets/SecretServiceTokenStore.h"

#include "CorvanePlatform/Linux/Secrets/SecretServiceSession.h"

#include <QStringDecoder>

#include <cstring>
#include <functional>
#include <system_error>

namespace corvane {

struct KeychainTokenStore::Account {
    const char* name;
    const char* label;
};
const KeychainTokenStore::Account KeychainTokenStore::huggingFace{"HF_TOKEN", "Corvane: Hugging Face token"};
const KeychainTokenStore::Account KeychainTokenStore::notion{"NOTION_TOKEN", "Corvane: Notion token"};

namespace {

template<typename Result>
Result askKeyring(std::chrono::milliseconds deadline, std::function<Result(GCancellable*)> job) {
    try {
        return within<Result>(deadline, std::move(job));
    } catch (const DeadlineError&) {
        throwKeychainError(KeychainStatus::timedOut);
    } catch (const std::system_error& error) {
        throwKeychainError(KeychainStatus::failed, QString::fromUtf8(error.what()));
    }
}

void wipe(QByteArray& secret) {
    ::explicit_bzero(secret.data(), static_cast<size_t>(secret.size()));
}

} // namespace

KeychainTokenStore::KeychainTokenStore(std::chrono::milliseconds deadline, KeyringPrompt prompt)
    : m_deadline(deadline), m_prompt(prompt) {}

bool KeychainTokenStore::has(const Account& account) const {
    return askKeyring<bool>(m_deadline, [name = account.name, prompt = m_prompt](GCancellable* cancellable) {
        return SecretServiceSession(name, prompt, cancellable).contains();
    });
}

std::optional<QString> KeychainTokenStore::read(const Account& account) const {
    return askKeyring<std::optional<QString>>(
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
    askKeyring<void>(m_deadline,
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
    askKeyring<void>(m_deadline, [name = account.name, prompt = m_prompt](GCancellable* cancellable) {
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
