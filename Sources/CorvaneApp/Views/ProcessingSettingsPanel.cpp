#include "CorvaneApp/Views/ProcessingSettingsPanel.h"

#include "CorvaneApp/Views/PanelText.h"

#include <algorithm>

namespace corvane {

namespace {

const QString french = QStringLiteral("fr");
const QString english = QStringLiteral("en");

PanelStepper stepper(PanelStepper::Field field, const QString& text, qint64 value) {
    PanelStepper made;
    made.text = text.arg(value);
    made.value = value;
    made.field = static_cast<int>(field);
    return made;
}

QString speakerDetectionSummary(const ProcessingSettings& settings) {
    if (!settings.diarizationEnabled)
        return PanelText::tr(" · speaker detection off");
    if (settings.speakerCountMode == speakerCountMode::fixed)
        return PanelText::tr(" · speaker detection on · exactly %1").arg(settings.speakerCount);
    if (settings.speakerCountMode == speakerCountMode::range) {
        return PanelText::tr(" · speaker detection on · %1-%2 speakers")
            .arg(settings.minSpeakerCount)
            .arg(settings.maxSpeakerCount);
    }
    return PanelText::tr(" · speaker detection on · auto");
}

} // namespace

std::vector<PanelStepper> speakerCountSteppers(const QString& mode, qint64 count, qint64 min, qint64 max) {
    using Field = PanelStepper::Field;
    if (mode == speakerCountMode::fixed)
        return {stepper(Field::count, PanelText::tr("Count: %1"), count)};
    if (mode == speakerCountMode::range)
        return {stepper(Field::min, PanelText::tr("Min: %1"), min), stepper(Field::max, PanelText::tr("Max: %1"), max)};
    return {};
}

std::vector<PickerChoice> languageChoices() {
    return {{PanelText::tr("French"), french}, {PanelText::tr("English"), english}};
}

std::vector<PickerChoice> speakerCountModeChoices() {
    return {{PanelText::tr("Exactly"), speakerCountMode::fixed},
            {PanelText::tr("Between"), speakerCountMode::range},
            {PanelText::tr("Auto"), speakerCountMode::automatic}};
}

QString processingSettingsSummary(const ProcessingSettings& settings) {
    const QString language = settings.language == french ? PanelText::tr("French") : PanelText::tr("English");
    return language + speakerDetectionSummary(settings);
}

ProcessingSettings withStepped(ProcessingSettings settings, PanelStepper::Field field, qint64 value) {
    switch (field) {
    case PanelStepper::Field::count:
        settings.speakerCount = std::max<qint64>(value, 1);
        break;
    case PanelStepper::Field::min:
        settings.minSpeakerCount = std::max<qint64>(std::min(value, settings.maxSpeakerCount), 1);
        break;
    case PanelStepper::Field::max:
        settings.maxSpeakerCount = std::max(value, settings.minSpeakerCount);
        break;
    }
    return settings;
}

} // namespace corvane
