// Cutting text to what Notion takes. Characters are what a reader sees as one: a letter with its marks, a flag, an
// emoji of several parts. Pure functions.
#pragma once

#include <QString>

#include <vector>

namespace corvane {

// The service refuses a text of more than 2,000; this stays clear of it.
inline constexpr qsizetype notionTextLimit = 1900;

// Pieces of exactly `limit` characters (at least 1), the last with what remains, wherever the words end. At least one
// piece, be it empty.
[[nodiscard]] std::vector<QString> splitText(const QString& text, qsizetype limit);

// The first `limit` characters.
[[nodiscard]] QString firstCharacters(const QString& text, qsizetype limit);

} // namespace corvane
