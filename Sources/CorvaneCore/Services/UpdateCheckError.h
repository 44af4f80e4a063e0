// What is wrong with the answer of an update server, in words for the user. Thread-safe values.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"

namespace corvane {

class UpdateCheckError : public Error {
public:
    enum class Case { httpStatus, missingRequiredField, invalidResponse };

    [[nodiscard]] static UpdateCheckError httpStatus(int code) {
        return {Case::httpStatus, UserText::tr("The update server returned HTTP %1.").arg(code)};
    }
    // There, but blank.
    [[nodiscard]] static UpdateCheckError missingRequiredField(const char* name) {
        return {Case::missingRequiredField,
                UserText::tr("The update manifest is missing %1.").arg(QLatin1String(name))};
    }
    [[nodiscard]] static UpdateCheckError invalidResponse() {
        return {Case::invalidResponse, UserText::tr("The update server returned an invalid response.")};
    }

    [[nodiscard]] Case which() const { return m_case; }

private:
    UpdateCheckError(Case which, const QString& text) : Error(text), m_case(which) {}

    Case m_case;
};

} // namespace corvane
