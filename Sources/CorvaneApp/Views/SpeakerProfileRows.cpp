#include "CorvaneApp/Views/SpeakerProfileRows.h"

#include "CorvaneApp/Views/PanelText.h"

#include <QCollator>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

struct ModeName {
    SpeakerProfileSortMode mode;
    const char* name;
};

constexpr std::array modeNames{
    ModeName{SpeakerProfileSortMode::createdDescending, "createdDescending"},
    ModeName{SpeakerProfileSortMode::createdAscending, "createdAscending"},
    ModeName{SpeakerProfileSortMode::lastSeenDescending, "lastSeenDescending"},
    ModeName{SpeakerProfileSortMode::lastSeenAscending, "lastSeenAscending"},
    ModeName{SpeakerProfileSortMode::footprintDescending, "footprintDescending"},
    ModeName{SpeakerProfileSortMode::footprintAscending, "footprintAscending"},
};

PickerChoice choice(const QString& text, SpeakerProfileSortMode mode) {
    PickerChoice made;
    made.text = text;
    made.value = rawText(mode);
    return made;
}

bool wasSeenBefore(const SpeakerProfileSummary& a, const SpeakerProfileSummary& b, Qt::SortOrder order) {
    if (a.lastSeenAt && b.lastSeenAt)
        return order == Qt::AscendingOrder ? *a.lastSeenAt < *b.lastSeenAt : *a.lastSeenAt > *b.lastSeenAt;
    return a.lastSeenAt.has_value() && !b.lastSeenAt;
}

bool hasFootprintBefore(const SpeakerProfileSummary& a, const SpeakerProfileSummary& b, Qt::SortOrder order,
                        const QCollator& names) {
    if (a.meetingCount != b.meetingCount)
        return order == Qt::AscendingOrder ? a.meetingCount < b.meetingCount : a.meetingCount > b.meetingCount;
    return names.compare(a.profile.displayName, b.profile.displayName) < 0;
}

bool isBefore(const SpeakerProfileSummary& a, const SpeakerProfileSummary& b, SpeakerProfileSortMode mode,
              const QCollator& names) {
    switch (mode) {
    case SpeakerProfileSortMode::createdDescending:
        return a.profile.createdAt > b.profile.createdAt;
    case SpeakerProfileSortMode::createdAscending:
        return a.profile.createdAt < b.profile.createdAt;
    case SpeakerProfileSortMode::lastSeenDescending:
        return wasSeenBefore(a, b, Qt::DescendingOrder);
    case SpeakerProfileSortMode::lastSeenAscending:
        return wasSeenBefore(a, b, Qt::AscendingOrder);
    case SpeakerProfileSortMode::footprintDescending:
        return hasFootprintBefore(a, b, Qt::DescendingOrder, names);
    case SpeakerProfileSortMode::footprintAscending:
        return hasFootprintBefore(a, b, Qt::AscendingOrder, names);
    }
    return false;
}

SpeakerProfileFigure figure(const char* iconName, const QString& helpText, const QString& text) {
    SpeakerProfileFigure made;
    made.iconName = QString::fromLatin1(iconName);
    made.helpText = helpText;
    made.text = text;
    return made;
}

// The locale's medium form has no name in the toolkit: it is the long one without the day of the week and with the
// month cut short.
QString mediumDateShortTime(const QDateTime& time, const QLocale& locale) {
    static const QRegularExpression weekday(QStringLiteral("^dddd\\p{P}?\\s*|\\p{P}?\\s*dddd"));
    QString dateFormat = locale.dateFormat(QLocale::LongFormat);
    dateFormat.remove(weekday).replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    const QDateTime local = time.toLocalTime();
    return PanelText::tr("%1, %2").arg(locale.toString(local.date(), dateFormat),
                                       locale.toString(local.time(), QLocale::ShortFormat));
}

} // namespace

std::vector<PickerChoice> speakerProfileSortChoices() {
    return {
        choice(PanelText::tr("Created date descending"), SpeakerProfileSortMode::createdDescending),
        choice(PanelText::tr("Created date ascending"), SpeakerProfileSortMode::createdAscending),
        choice(PanelText::tr("Last seen descending"), SpeakerProfileSortMode::lastSeenDescending),
        choice(PanelText::tr("Last seen ascending"), SpeakerProfileSortMode::lastSeenAscending),
        choice(PanelText::tr("Footprint size descending"), SpeakerProfileSortMode::footprintDescending),
        choice(PanelText::tr("Footprint size ascending"), SpeakerProfileSortMode::footprintAscending),
    };
}

QString rawText(SpeakerProfileSortMode mode) {
    const auto found =
        std::find_if(modeNames.begin(), modeNames.end(), [&](const ModeName& named) { return named.mode == mode; });
    return QString::fromLatin1(found->name);
}

std::optional<SpeakerProfileSortMode> speakerProfileSortMode(const QString& text) {
    const auto found = std::find_if(modeNames.begin(), modeNames.end(),
                                    [&](const ModeName& named) { return text == QLatin1String(named.name); });
    return found == modeNames.end() ? std::nullopt : std::optional(found->mode);
}

std::vector<SpeakerProfileSummary> sortedSpeakerProfiles(std::vector<SpeakerProfileSummary> profiles,
                                                         SpeakerProfileSortMode mode, const QLocale& locale) {
    QCollator names(locale);
    names.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(profiles.begin(), profiles.end(),
                     [&](const auto& a, const auto& b) { return isBefore(a, b, mode, names); });
    return profiles;
}

std::vector<SpeakerProfileFigure> speakerProfileFigures(const SpeakerProfileSummary& summary, const QLocale& locale) {
    return {
        figure("calendar", PanelText::tr("Meetings used"), QString::number(summary.meetingCount)),
        figure("waveform", PanelText::tr("Speech duration used"),
               SpeakerProfileRow::formatDuration(summary.totalSpeechSeconds)),
        figure("clock", PanelText::tr("Last detection"),
               summary.lastSeenAt ? mediumDateShortTime(*summary.lastSeenAt, locale) : PanelText::tr("Never")),
        figure("scope", PanelText::tr("Latest suggestion score"),
               summary.latestMatchScore ? locale.toString(*summary.latestMatchScore, 'f', 2) : QStringLiteral("-")),
        figure("number", PanelText::tr("Stored observations"), QString::number(summary.observationCount)),
    };
}

QString SpeakerProfileRow::formatDuration(double seconds) {
    if (!std::isfinite(seconds))
        qFatal("a voice profile's speech time is no finite number");
    constexpr double longest = 1e15; // far from where a double no longer fits a whole number
    const auto whole = static_cast<qint64>(std::clamp(seconds, -longest, longest));
    return PanelText::tr("%1m %2s").arg(whole / 60).arg(whole % 60);
}

} // namespace corvane
