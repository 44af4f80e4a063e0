#include "CorvaneCtl/MeetingJson.h"

#include "CorvaneContract/Json/JsonWriter.h"

namespace corvane::ctl {

std::optional<QDateTime> timeOf(FileTime time) {
    if (time == distantPast)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(time / 1'000'000, Qt::UTC);
}

QJsonValue textOrNull(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject meetingJson(const MeetingListItem& meeting) {
    const auto time = timeOf(meeting.modifiedAt);
    return {
        {QStringLiteral("id"), meeting.id},
        {QStringLiteral("title"), meeting.title},
        {QStringLiteral("status"), meeting.status},
        {QStringLiteral("modifiedAt"),
         textOrNull(time ? std::optional(time->toString(Qt::ISODateWithMs)) : std::nullopt)},
        {QStringLiteral("latestRun"), meeting.isDraft() ? QJsonValue() : QJsonValue(meeting.latestRun)},
        {QStringLiteral("audio"), textOrNull(meeting.audioURL)},
        {QStringLiteral("runs"), encodeArray(meeting.runURLs, [](const QString& run) { return QJsonValue(run); })},
    };
}

QJsonObject settingsJson(const ProcessingSettings& settings) {
    return {
        {QStringLiteral("language"), settings.language},
        {QStringLiteral("diarizationEnabled"), settings.diarizationEnabled},
        {QStringLiteral("speakerCountMode"), settings.speakerCountMode},
        {QStringLiteral("speakerCount"), settings.speakerCount},
        {QStringLiteral("minSpeakerCount"), settings.minSpeakerCount},
        {QStringLiteral("maxSpeakerCount"), settings.maxSpeakerCount},
        {QStringLiteral("speakerIdentificationContext"), settings.speakerIdentificationContext},
    };
}

QJsonValue profileOf(const TranscriptResult& result, const QString& label) {
    const auto link = result.speakerProfileAssignments.find(label);
    return link == result.speakerProfileAssignments.end() ? QJsonValue() : QJsonValue(uuidText(link->second.profileID));
}

QJsonArray speakersJson(const TranscriptResult& result) {
    return encodeArray(result.speakers, [&](const TranscriptSpeaker& speaker) {
        return QJsonObject{
            {QStringLiteral("label"), speaker.speaker},
            {QStringLiteral("name"), textOrNull(speakerName(result, speaker.speaker))},
            {QStringLiteral("profile"), profileOf(result, speaker.speaker)},
            {QStringLiteral("speechSeconds"), speaker.duration},
        };
    });
}

std::optional<QString> speakerName(const TranscriptResult& result, const QString& label) {
    const auto name = result.speakerNames.find(label);
    if (name == result.speakerNames.end() || name->second.trimmed().isEmpty())
        return std::nullopt;
    return name->second;
}

} // namespace corvane::ctl
