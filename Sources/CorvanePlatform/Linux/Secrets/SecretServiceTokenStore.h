// The user's tokens in the desktop's keyring, by the Secret Service that GNOME Keyring, KWallet and others offer. Every
// call works on a thread of its own, so that neither a hung service nor the end of the session
// bus reaches the caller. Holds no state but its two settings; any thread.
#pragma once

#include "CorvaneCore/Interfaces/SecretStoring.h"

#include <chrono>

namespace corvane {

// TokenStoreError::status() of every failure of KeychainTokenStore.
enum class KeychainStatus : std::int32_t {
    noSessionBus = 1,
    noService = 2,
    locked = 3,
    noKeyring = 4, // the service runs, but has no default collection to save in
    timedOut = 5,
    failed = 6, // anything else; the text is the service's own
};

// Whether the desktop may ask the user for the password of a locked keyring, or for that of a new one.
enum class KeyringPrompt { never, allowed };

class KeychainTokenStore final : public SecretStoring {
public:
    // No call takes longer than the deadline and half a second. A caller that allows prompts has to give the user time.
    explicit KeychainTokenStore(std::chrono::milliseconds deadline = std::chrono::seconds(5),
                                KeyringPrompt prompt = KeyringPrompt::never);

    [[nodiscard]] bool hasHuggingFaceToken() override;
    [[nodiscard]] std::optional<QString> readHuggingFaceToken() override;
    void saveHuggingFaceToken(const QString& token) override;
    void deleteHuggingFaceToken() override;
    [[nodiscard]] bool hasNotionToken() override;
    [[nodiscard]] std::optional<QString> readNotionToken() override;
    void saveNotionToken(const QString& token) override;
    void deleteNotionToken() override;

private:
    struct Account;
    static const Account huggingFace;
    static const Account notion;

    [[nodiscard]] bool has(const Account& account) const;
    [[nodiscard]] std::optional<QString> read(const Account& account) const;
    void save(const Account& account, const QString& token) const;
    void remove(const Account& account) const;

    std::chrono::milliseconds m_deadline;
    KeyringPrompt m_prompt;
};

} // namespace corvane
