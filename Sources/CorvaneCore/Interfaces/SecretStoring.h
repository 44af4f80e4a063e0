// Storage of the user's two tokens. Everything else depends on this interface alone.
//
// Saving trims white space and line ends; saving an empty token deletes; deleting what is not there is no failure;
// what is not found is absent, not an error. Nothing is cached. Every call may block, but no longer than the
// implementation's deadline of a few seconds, and may be made from any thread: callers on the main thread hand it to
// a background task.
#pragma once

#include "CorvaneContract/Error.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace corvane {

class TokenStoreError : public Error {
public:
    // The status is the platform's own; the text says what a user can do about it.
    TokenStoreError(std::int32_t status, const QString& text) : Error(text), m_status(status) {}
    [[nodiscard]] std::int32_t status() const { return m_status; }

private:
    std::int32_t m_status;
};

class SecretStoring {
public:
    virtual ~SecretStoring() = default;

    // All throw TokenStoreError. `has` never loads the secret itself.
    [[nodiscard]] virtual bool hasHuggingFaceToken() = 0;
    [[nodiscard]] virtual std::optional<QString> readHuggingFaceToken() = 0;
    virtual void saveHuggingFaceToken(const QString& token) = 0;
    virtual void deleteHuggingFaceToken() = 0;
    [[nodiscard]] virtual bool hasNotionToken() = 0;
    [[nodiscard]] virtual std::optional<QString> readNotionToken() = 0;
    virtual void saveNotionToken(const QString& token) = 0;
    virtual void deleteNotionToken() = 0;
};

} // namespace corvane
