// What keeps a meeting from being published to Notion, in words for the user. Thread-safe values.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"

namespace corvane {

class NotionError : public Error {
public:
    enum class Case { requestFailed, missingMappedProperty, unsupportedMappedProperty, invalidDatabaseURL };

    // The service refused; `message` is its own explanation.
    [[nodiscard]] static NotionError requestFailed(const QString& message) { return {Case::requestFailed, message}; }
    [[nodiscard]] static NotionError missingMappedProperty(const QString& name) {
        return {Case::missingMappedProperty, UserText::tr("Mapped Notion column not found: %1").arg(name)};
    }
    // One wording for every column, although not every column may be multi-select.
    [[nodiscard]] static NotionError unsupportedMappedProperty(const QString& name, const QString& type) {
        return {Case::unsupportedMappedProperty,
                UserText::tr("Mapped Notion column %1 must be rich text or multi-select, not %2").arg(name, type)};
    }
    [[nodiscard]] static NotionError invalidDatabaseURL() {
        return {Case::invalidDatabaseURL, UserText::tr("Invalid Notion database URL")};
    }

    [[nodiscard]] Case which() const { return m_case; }

private:
    NotionError(Case which, const QString& text) : Error(text), m_case(which) {}

    Case m_case;
};

} // namespace corvane
