#include "CorvaneCore/Notion/NotionPage.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneCore/Notion/NotionError.h"
#include "CorvaneCore/Text/Characters.h"
#include "CorvaneCore/Transcripts/SpeakerReview.h"

#include <QStringList>

#include <set>

namespace corvane {

namespace {

constexpr int pagesPerSearch = 50;

QJsonObject single(const QString& key, const QJsonValue& value) {
    return {{key, value}};
}

QJsonArray listOf(const QJsonObject& item) {
    QJsonArray list;
    list.append(item);
    return list;
}

QJsonObject textContent(const QString& text) {
    return single(QStringLiteral("content"), text);
}

// The value of a column. Unlike in a block, a text here does not name its type.
QJsonObject textValue(const QString& key, const QString& text) {
    return single(key, listOf(single(QStringLiteral("text"), textContent(text))));
}

QJsonObject richTextValue(const QString& text) {
    return textValue(QStringLiteral("rich_text"), text);
}

QJsonObject block(const QString& type, const QString& text) {
    const QJsonObject item{{QStringLiteral("type"), QStringLiteral("text")},
                           {QStringLiteral("text"), textContent(text)}};
    return {{QStringLiteral("object"), QStringLiteral("block")},
            {QStringLiteral("type"), type},
            {type, single(QStringLiteral("rich_text"), listOf(item))}};
}

QJsonObject paragraph(const QString& text) {
    return block(QStringLiteral("paragraph"), text);
}

QJsonObject heading(int level, const QString& text) {
    return block(QStringLiteral("heading_%1").arg(level), text);
}

void appendParagraphs(QJsonArray& blocks, const QString& text) {
    for (const QString& piece : splitText(text, notionTextLimit))
        blocks.append(paragraph(piece));
}

SpeakerNames merged(const SpeakerNames& preferred, const SpeakerNames& others) {
    SpeakerNames names = preferred;
    names.insert(others.begin(), others.end());
    return names;
}

} // namespace

std::vector<QString> participantNames(const TranscriptResult& result, const SpeakerNames& speakerNames) {
    const SpeakerNames names = merged(speakerNames, result.speakerNames);
    std::vector<QString> participants;
    std::set<QString> seen;
    for (const TranscriptSpeaker& speaker : result.speakers) {
        const QString name = displayName(speaker.speaker, names).trimmed();
        if (!name.isEmpty() && seen.insert(name.toLower()).second)
            participants.push_back(name);
    }
    return participants;
}

std::optional<QJsonObject> participantsPropertyValue(const std::vector<QString>& names,
                                                     const NotionPropertyInfo& property) {
    if (names.empty())
        return std::nullopt;
    if (property.type == u"rich_text")
        return richTextValue(QStringList(names.begin(), names.end()).join(QStringLiteral(", ")));
    if (property.type != u"multi_select")
        throw NotionError::unsupportedMappedProperty(property.name, property.type);
    QJsonArray options;
    for (const QString& name : names)
        options.append(single(QStringLiteral("name"), name));
    return single(QStringLiteral("multi_select"), options);
}

std::optional<QJsonObject> summaryPropertyValue(const QString& summary, const NotionPropertyInfo& property) {
    const QString text = summary.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    if (property.type != u"rich_text")
        throw NotionError::unsupportedMappedProperty(property.name, property.type);
    return richTextValue(firstCharacters(text, notionTextLimit));
}

QJsonArray meetingBlocks(const QString& meetingID, const TranscriptResult& result, const SpeakerNames& speakerNames) {
    QJsonArray blocks;
    blocks.append(paragraph(QStringLiteral("Meeting ID: ") + meetingID));
    if (result.llm && !result.llm->summary.isEmpty()) {
        blocks.append(heading(2, QStringLiteral("Summary")));
        appendParagraphs(blocks, result.llm->summary);
    }
    blocks.append(heading(2, QStringLiteral("Transcript")));
    const SpeakerNames names = merged(speakerNames, result.speakerNames);
    for (const TranscriptSegmentGroup& group : groupedSegments(result.segments)) {
        const QString time = QLatin1Char('[') + timestampPlain(group.start) + QStringLiteral("] ");
        appendParagraphs(blocks, time + displayName(group.speaker, names) + QStringLiteral(": ") + group.text);
    }
    return blocks;
}

QString notionPageTitle(const NotionMeeting& meeting) {
    return meeting.title.isEmpty() ? QStringLiteral("Meeting transcript") : meeting.title;
}

QJsonObject notionPageProperties(const NotionMeeting& meeting) {
    QJsonObject properties;
    properties.insert(meeting.titleProperty, textValue(QStringLiteral("title"), notionPageTitle(meeting)));
    if (const auto& property = meeting.participantsProperty) {
        const auto names = participantNames(meeting.result, meeting.speakerNames);
        if (const auto value = participantsPropertyValue(names, *property))
            properties.insert(property->name, *value);
    }
    if (const auto& property = meeting.summaryProperty) {
        const QString summary = meeting.result.llm ? meeting.result.llm->summary : QString();
        if (const auto value = summaryPropertyValue(summary, *property))
            properties.insert(property->name, *value);
    }
    if (const auto& property = meeting.meetingIDProperty)
        properties.insert(property->name, richTextValue(meeting.meetingID));
    return properties;
}

QJsonObject notionPageBody(const QString& databaseID, const QJsonObject& properties, const QJsonArray& firstBlocks) {
    return {{QStringLiteral("parent"), single(QStringLiteral("database_id"), databaseID)},
            {QStringLiteral("properties"), properties},
            {QStringLiteral("children"), firstBlocks}};
}

QJsonObject notionQueryBody(const QString& meetingID, const std::optional<QString>& meetingIDProperty) {
    QJsonObject body{{QStringLiteral("page_size"), pagesPerSearch}};
    if (meetingIDProperty) {
        const QJsonObject filter{{QStringLiteral("property"), *meetingIDProperty},
                                 {QStringLiteral("rich_text"), single(QStringLiteral("equals"), meetingID)}};
        body.insert(QStringLiteral("filter"), filter);
    }
    return body;
}

std::vector<QJsonArray> notionBatches(const QJsonArray& blocks) {
    std::vector<QJsonArray> batches(1);
    for (const QJsonValue block : blocks) {
        if (batches.back().size() == notionBlocksPerRequest)
            batches.emplace_back();
        batches.back().append(block);
    }
    return batches;
}

} // namespace corvane
