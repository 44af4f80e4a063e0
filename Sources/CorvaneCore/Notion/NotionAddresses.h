// The addresses of Notion: where its interface and its pages are, and the ids that stand in them. Pure functions.
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace corvane {

// The REST interface, with its path; request paths are appended to it.
[[nodiscard]] QUrl notionServiceURL();

// Where anyone's browser finds a page: the public page base and the id without its dashes.
[[nodiscard]] QString notionPageURL(const QString& pageID);

// The id of the database in an address that a user has entered: the first 32 hexadecimal digits in a row or in the
// five groups of a UUID, without dashes, in the case in which they stand. Nothing if there are none.
[[nodiscard]] std::optional<QString> notionDatabaseID(const QString& enteredURL);

} // namespace corvane
