// Tokens that live as long as the test, which may have every call fail or give the answer itself. Thread-safe.
#pragma once

#include "CorvaneCore/Interfaces/SecretStoring.h"

#include <QSemaphore>

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>

namespace corvane {

class FakeTokenStore final : public SecretStoring {
public:
    // In the place of the stored Hugging Face token, on the reader's thread; also what no honest store keeps. Set it
    // before it is used.
    std::function<std::optional<QString>()> answer;

    // Questions for the Hugging Face token are counted, when they come and when they are answered. With a gate the
    // answer, as it is by then, waits until the gate is released.
    std::atomic<int> asked = 0;
    std::atomic<int> answered = 0;
    void hold(QSemaphore* gate) { m_gate = gate; }

    [[nodiscard]] bool hasHuggingFaceToken() override {
        const bool has = read(m_huggingFace).has_value();
        ++asked;
        if (QSemaphore* const gate = m_gate)
            gate->acquire();
        ++answered;
        return has;
    }
    [[nodiscard]] std::optional<QString> readHuggingFaceToken() override {
        return answer ? answer() : read(m_huggingFace);
    }
    void saveHuggingFaceToken(const QString& token) override { save(m_huggingFace, token); }
    void deleteHuggingFaceToken() override { save(m_huggingFace, {}); }
    [[nodiscard]] bool hasNotionToken() override { return read(m_notion).has_value(); }
    [[nodiscard]] std::optional<QString> readNotionToken() override { return read(m_notion); }
    void saveNotionToken(const QString& token) override { save(m_notion, token); }
    void deleteNotionToken() override { save(m_notion, {}); }

    // Every call throws this until it is set back to nothing.
    void setFailure(const std::optional<TokenStoreError>& failure) {
        const std::lock_guard guard(m_mutex);
        m_failure = failure;
    }

private:
    using Token = std::optional<QString>;

    [[nodiscard]] Token read(const Token& token) const {
        const std::lock_guard guard(m_mutex);
        throwIfFailing();
        return token;
    }
    void save(Token& token, const QString& text) {
        const std::lock_guard guard(m_mutex);
        throwIfFailing();
        const QString trimmed = text.trimmed();
        token = trimmed.isEmpty() ? std::nullopt : Token(trimmed);
    }
    void throwIfFailing() const {
        if (m_failure)
            throw *m_failure;
    }

    std::atomic<QSemaphore*> m_gate = nullptr;
    mutable std::mutex m_mutex;
    Token m_huggingFace;
    Token m_notion;
    std::optional<TokenStoreError> m_failure;
};

} // namespace corvane
