// No keyring at all: every call says so. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/SecretStoring.h"

namespace corvane {

class NullSecretStore final : public SecretStoring {
public:
    // TokenStoreError::status(); no other store has it.
    static constexpr std::int32_t status = -1;

    [[nodiscard]] bool hasHuggingFaceToken() override { fail(); }
    [[nodiscard]] std::optional<QString> readHuggingFaceToken() override { fail(); }
    void saveHuggingFaceToken(const QString&) override { fail(); }
    void deleteHuggingFaceToken() override { fail(); }
    [[nodiscard]] bool hasNotionToken() override { fail(); }
    [[nodiscard]] std::optional<QString> readNotionToken() override { fail(); }
    void saveNotionToken(const QString&) override { fail(); }
    void deleteNotionToken() override { fail(); }

private:
    [[noreturn]] static void fail() {
        throw TokenStoreError(status, QStringLiteral("Corvane was started without a keyring, so it keeps no tokens."));
    }
};

} // namespace corvane
