// What Notion says of a database and of its pages, read with tolerance from free-form JSON: only the little that is
// needed must be there. Plain values and pure functions.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"

#include <QString>

#include <map>
#include <optional>
#include <vector>

namespace corvane {

// A column that was looked up.
struct NotionPropertyInfo {
    QString name; // as the database spells it
    QString type; // in the service's terms: "title", "rich_text", "multi_select", ...

    friend bool operator==(const NotionPropertyInfo&, const NotionPropertyInfo&) = default;
};

struct NotionDatabaseInfo {
    QString title;                            // never empty
    QString titleProperty;                    // the column of type "title"
    std::optional<QString> meetingIDProperty; // a column that looks like one for the meeting ID
    std::map<QString, QString> propertyTypes; // by the name of the column

    // A column by its name: without blanks around it, as it is spelt, or else in any case. "First" among several
    // columns is here and below the order of the map, by name.
    [[nodiscard]] std::optional<NotionPropertyInfo> property(const QString& named) const;
    // The columns that by their name are meant for these. Their types play no part.
    [[nodiscard]] std::optional<QString> inferredParticipantsPropertyName() const;
    [[nodiscard]] std::optional<QString> inferredSummaryPropertyName() const;

    friend bool operator==(const NotionDatabaseInfo&, const NotionDatabaseInfo&) = default;
};

// One page of a database.
struct NotionPageMatch {
    QString id; // with dashes, as the service writes it
    QString title;
    QString url; // may be empty

    friend bool operator==(const NotionPageMatch&, const NotionPageMatch&) = default;
};

// From the service's description of a database.
[[nodiscard]] NotionDatabaseInfo notionDatabaseInfo(const JSONValue::Object& answer);

// From the answer to a search. Where the service could not filter, `mentioning` is the text that must stand somewhere
// in the properties of a page, be it loosely, for the page to count.
[[nodiscard]] std::vector<NotionPageMatch> notionPageMatches(const JSONValue::Object& answer,
                                                             const std::optional<QString>& mentioning);

} // namespace corvane
