// Cutting text by characters as a reader counts them: a letter with its marks is one, and so is a flag or an emoji of
// several parts. Pure functions; any thread.
#pragma once

#include <QString>

#include <vector>

namespace corvane {

// Pieces of exactly `limit` characters (at least 1), the last with what remains, wherever the words end. At least one
// piece, be it empty.
[[nodiscard]] std::vector<QString> splitText(const QString& text, qsizetype limit);

// The first `limit` characters, or all if there are fewer.
[[nodiscard]] QString firstCharacters(const QString& text, qsizetype limit);

} // namespace corvane
