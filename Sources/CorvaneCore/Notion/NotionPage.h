// A meeting as Notion takes it: the values of its columns, the blocks of its page, and the bodies of the requests that
// carry them. Pure functions; what cannot be said in the database's columns throws NotionError.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Notion/NotionDatabase.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>
#include <vector>

namespace corvane {

// The service refuses a text of more than 2,000 characters; this stays clear of it.
inline constexpr qsizetype notionTextLimit = 1900;

// The most that the service takes in one request.
inline constexpr qsizetype notionBlocksPerRequest = 100;

// A meeting to publish, and the columns that it goes into.
struct NotionMeeting {
    QString meetingID;
    QString title; // empty for none
    TranscriptResult result;
    SpeakerNames speakerNames; // by label; these win over the names in the result

    QString titleProperty;
    std::optional<NotionPropertyInfo> meetingIDProperty;
    std::optional<NotionPropertyInfo> participantsProperty;
    std::optional<NotionPropertyInfo> summaryProperty;
};

// The names of those who spoke, in the order of the result. No two of them differ in case alone.
[[nodiscard]] std::vector<QString> participantNames(const TranscriptResult& result, const SpeakerNames& speakerNames);

// Nothing without names, whatever the column. Throws NotionError for a column that takes no names.
[[nodiscard]] std::optional<QJsonObject> participantsPropertyValue(const std::vector<QString>& names,
                                                                   const NotionPropertyInfo& property);
// As much of it as the column takes; the page has all of it. Nothing for a blank one, whatever the column. Throws
// NotionError for a column that takes no text.
[[nodiscard]] std::optional<QJsonObject> summaryPropertyValue(const QString& summary,
                                                              const NotionPropertyInfo& property);

// The whole page.
[[nodiscard]] QJsonArray meetingBlocks(const QString& meetingID, const TranscriptResult& result,
                                       const SpeakerNames& speakerNames);

// The meeting's own title, or one that does for any.
[[nodiscard]] QString notionPageTitle(const NotionMeeting& meeting);

// The values by column. Throws NotionError.
[[nodiscard]] QJsonObject notionPageProperties(const NotionMeeting& meeting);

[[nodiscard]] QJsonObject notionPageBody(const QString& databaseID, const QJsonObject& properties,
                                         const QJsonArray& firstBlocks);
// At most 50 pages; of those whose column holds the meeting ID, or without a column of any.
[[nodiscard]] QJsonObject notionQueryBody(const QString& meetingID, const std::optional<QString>& meetingIDProperty);

// In the order of the blocks, each of at most `notionBlocksPerRequest`; at least one batch, be it empty.
[[nodiscard]] std::vector<QJsonArray> notionBatches(const QJsonArray& blocks);

} // namespace corvane
