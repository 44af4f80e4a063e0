// A token store that the test can make slow, or fail. Thread-safe; set the fields before it is used.
#pragma once

#include "CorvaneCore/Interfaces/SecretStoring.h"

#include <functional>
#include <mutex>

namespace corvane {

class FakeTokenStore final : public SecretStoring {
public:
    bool fails = false;
    std::function<void()> beforeRead; // on the reader's thread

    [[nodiscard]] bool hasHuggingFaceToken() override { return has(m_huggingFace); }
    [[nodiscard]] std::optional<QString> readHuggingFaceToken() override { return read(m_huggingFace); }
    void saveHuggingFaceToken(const QString& token) override { save(m_huggingFace, token); }
    void deleteHuggingFaceToken() override { save(m_huggingFace, {}); }
    [[nodiscard]] bool hasNotionToken() override { return has(m_notion); }
    [[nodiscard]] std::optional<QString> readNotionToken() override { return read(m_notion); }
    void saveNotionToken(const QString& token) override { save(m_notion, token); }
    void deleteNotionToken() override { save(m_notion, {}); }

    // Also what no honest store keeps, such as an empty token.
    void put(const std::optional<QString>& token) { m_huggingFace = token; }

private:
    using Token = std::optional<QString>;

    void check() const {
        if (fails)
            throw TokenStoreError(1, QStringLiteral("The keyring is locked."));
    }
    bool has(const Token& token) {
        check();
        const std::lock_guard guard(m_mutex);
        return token.has_value();
    }
    Token read(const Token& token) {
        if (beforeRead)
            beforeRead();
        check();
        const std::lock_guard guard(m_mutex);
        return token;
    }
    void save(Token& field, const QString& token) {
        check();
        const std::lock_guard guard(m_mutex);
        field = token.trimmed().isEmpty() ? Token() : token.trimmed();
    }

    std::mutex m_mutex;
    Token m_huggingFace;
    Token m_notion;
};

} // namespace corvane
