// The known people as the rows of their page: the order that the user has chosen, and the figures below each name.
// Plain values and pure functions.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneApp/Views/ProcessingSettingsPanel.h"
#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

#include <QLocale>

#include <optional>
#include <vector>

namespace corvane {

enum class SpeakerProfileSortMode {
    createdDescending,
    createdAscending,
    lastSeenDescending,
    lastSeenAscending,
    footprintDescending, // by the number of meetings
    footprintAscending,
};

// The choices of the picker, in its order; the value of each is the name of the case.
[[nodiscard]] std::vector<PickerChoice> speakerProfileSortChoices();
[[nodiscard]] QString rawText(SpeakerProfileSortMode mode);
[[nodiscard]] std::optional<SpeakerProfileSortMode> speakerProfileSortMode(const QString& rawText);

// Rows of equal rank keep their order. Who was never heard stands last in both orders by that time.
[[nodiscard]] std::vector<SpeakerProfileSummary>
sortedSpeakerProfiles(std::vector<SpeakerProfileSummary> profiles, SpeakerProfileSortMode mode, const QLocale& locale);

struct SpeakerProfileFigure {
    Q_GADGET
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString helpText MEMBER helpText)
    Q_PROPERTY(QString text MEMBER text)

public:
    QString iconName;
    QString helpText;
    QString text;

    friend bool operator==(const SpeakerProfileFigure&, const SpeakerProfileFigure&) = default;
};

[[nodiscard]] std::vector<SpeakerProfileFigure> speakerProfileFigures(const SpeakerProfileSummary& summary,
                                                                      const QLocale& locale);

// What a row shows is made when it is asked for: a store may know thousands, a screen shows few.
struct SpeakerProfileRow {
    Q_GADGET
    Q_PROPERTY(QString profileID READ profileID)
    Q_PROPERTY(QString displayName READ displayName)
    Q_PROPERTY(QString notes READ notes)
    Q_PROPERTY(bool isProfileEnabled READ isProfileEnabled)
    Q_PROPERTY(QVariantList figures READ figures)

public:
    SpeakerProfileSummary summary;

    [[nodiscard]] QString profileID() const { return summary.profile.id.toString(QUuid::WithoutBraces); }
    [[nodiscard]] QString displayName() const { return summary.profile.displayName; }
    [[nodiscard]] QString notes() const { return summary.profile.notes; }
    [[nodiscard]] bool isProfileEnabled() const { return summary.profile.enabled; }
    [[nodiscard]] QVariantList figures() const { return variantList(speakerProfileFigures(summary, QLocale())); }

    // "2m 5s" in whole seconds, cut off, minutes going on past 59. Ends the program for a number that is not finite:
    // no length of speech adds up to that.
    [[nodiscard]] static QString formatDuration(double seconds);

    friend bool operator==(const SpeakerProfileRow&, const SpeakerProfileRow&) = default;
};

} // namespace corvane
