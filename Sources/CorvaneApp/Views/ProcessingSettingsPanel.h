// How the shown meeting is to be processed, as the panel "Processing" shows it. Pure functions; the view draws the
// result and decides nothing.
#pragma once

#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QObject>
#include <QVariant>

#include <vector>

namespace corvane {

// One of a picker's choices.
struct PickerChoice {
    Q_GADGET
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString value MEMBER value)

public:
    QString text;
    QString value;

    friend bool operator==(const PickerChoice&, const PickerChoice&) = default;
};

// A number with a button for one less and one for one more.
struct PanelStepper {
    Q_GADGET
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(qint64 value MEMBER value)
    Q_PROPERTY(int from MEMBER from)
    Q_PROPERTY(int to MEMBER to)
    Q_PROPERTY(int field MEMBER field)

public:
    enum class Field { count, min, max };

    QString text; // with the number in it
    qint64 value = 0;
    int from = 1;
    int to = 8;
    int field = 0; // a Field

    friend bool operator==(const PanelStepper&, const PanelStepper&) = default;
};

// "Count: 2", or "Min: 1" and "Max: 8", by the mode; none where the number is not set by hand.
[[nodiscard]] std::vector<PanelStepper> speakerCountSteppers(const QString& mode, qint64 count, qint64 min, qint64 max);

[[nodiscard]] std::vector<PickerChoice> languageChoices();
[[nodiscard]] std::vector<PickerChoice> speakerCountModeChoices();
// One line for the closed panel.
[[nodiscard]] QString processingSettingsSummary(const ProcessingSettings& settings);

// The settings after a stepper was moved, each held to what the others allow.
[[nodiscard]] ProcessingSettings withStepped(ProcessingSettings settings, PanelStepper::Field field, qint64 value);

} // namespace corvane
