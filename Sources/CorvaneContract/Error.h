// The root of every exception that this house throws. One type per subject derives from it, so that a caller can catch
// its subject, and text() is what a user reads behind a fixed phrase. Thread-safe values.
#pragma once

#include <QString>

#include <stdexcept>

namespace corvane {

class Error : public std::runtime_error {
public:
    explicit Error(const QString& text) : std::runtime_error(text.toUtf8().toStdString()) {}
    [[nodiscard]] QString text() const { return QString::fromUtf8(what()); }
};

} // namespace corvane
