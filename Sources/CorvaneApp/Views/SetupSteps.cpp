#include "CorvaneApp/Views/SetupSteps.h"

#include "CorvaneApp/Views/PanelText.h"

#include <algorithm>

namespace corvane {

namespace {

const QString filledTick = QStringLiteral("checkmark.circle.fill");

QString openIcon(SetupStep step) {
    switch (step) {
    case SetupStep::welcome:
        return QStringLiteral("waveform.circle");
    case SetupStep::huggingFace:
        return QStringLiteral("person.badge.key");
    case SetupStep::ollama:
        return QStringLiteral("sparkles");
    case SetupStep::dependencies:
        return QStringLiteral("terminal");
    case SetupStep::finish:
        break;
    }
    return QStringLiteral("checkmark.circle");
}

QString setupOllamaTitle(OllamaState state) {
    return state == OllamaState::modelMissing ? PanelText::tr("Ollama is running, model missing")
                                              : ollamaStatusTitle(state);
}

QString setupOllamaDetail(OllamaState state) {
    switch (state) {
    case OllamaState::unknown:
        break;
    case OllamaState::checking:
        return PanelText::tr("Looking for Ollama and the recommended model.");
    case OllamaState::ready:
        return PanelText::tr("The qwen3:1.7b model is available.");
    case OllamaState::modelMissing:
        return PanelText::tr("Run the command below to install the recommended model.");
    case OllamaState::installed:
        return PanelText::tr("Open Ollama, then check again.");
    case OllamaState::missing:
        return PanelText::tr("You can skip this step and still use transcription.");
    }
    return PanelText::tr("Click Check Again to refresh this status.");
}

} // namespace

QString rawValue(SetupStep step) {
    switch (step) {
    case SetupStep::welcome:
        break;
    case SetupStep::huggingFace:
        return QStringLiteral("huggingFace");
    case SetupStep::ollama:
        return QStringLiteral("ollama");
    case SetupStep::dependencies:
        return QStringLiteral("dependencies");
    case SetupStep::finish:
        return QStringLiteral("finish");
    }
    return QStringLiteral("welcome");
}

QString setupStepTitle(SetupStep step) {
    switch (step) {
    case SetupStep::welcome:
        break;
    case SetupStep::huggingFace:
        return PanelText::tr("Hugging Face");
    case SetupStep::ollama:
        return PanelText::tr("Ollama");
    case SetupStep::dependencies:
        return PanelText::tr("Local Tools");
    case SetupStep::finish:
        return PanelText::tr("Finish");
    }
    return PanelText::tr("Welcome");
}

SetupStep stepAfter(SetupStep step) {
    const auto* const place = std::ranges::find(allSetupSteps, step);
    return place + 1 == allSetupSteps.end() ? step : *(place + 1);
}

SetupStep stepBefore(SetupStep step) {
    const auto* const place = std::ranges::find(allSetupSteps, step);
    return place == allSetupSteps.begin() ? step : *(place - 1);
}

std::vector<SetupStepRow> setupStepRows(SetupStep current, const std::set<SetupStep>& completed, bool setupCompleted) {
    std::vector<SetupStepRow> rows;
    for (const SetupStep step : allSetupSteps) {
        SetupStepRow row;
        row.title = setupStepTitle(step);
        row.isCompleted = step == SetupStep::finish ? setupCompleted : completed.contains(step);
        row.iconName = row.isCompleted ? filledTick : openIcon(step);
        row.isCurrent = step == current;
        rows.push_back(std::move(row));
    }
    return rows;
}

SetupFooter setupFooter(SetupStep step, bool setupCompleted) {
    SetupFooter footer;
    footer.canGoBack = step != SetupStep::welcome;
    footer.hasClose = setupCompleted;
    footer.hasFinish = step == SetupStep::finish;
    footer.hasContinue = !footer.hasFinish;
    footer.canSkip = step == SetupStep::huggingFace || step == SetupStep::ollama;
    if (!footer.hasFinish)
        footer.skipText = step == SetupStep::ollama ? PanelText::tr("Skip Ollama") : PanelText::tr("Skip for Now");
    return footer;
}

OllamaPanel setupOllamaPanel(OllamaState state) {
    OllamaPanel panel;
    panel.title = doneLine(state == OllamaState::ready, setupOllamaTitle(state), setupOllamaTitle(state));
    panel.detail = setupOllamaDetail(state);
    if (state == OllamaState::modelMissing) {
        panel.nextStep = ollamaPullCommand();
        panel.nextStepKind = QStringLiteral("command");
    }
    return panel;
}

SetupToolRow setupToolRow(const QString& name, bool isReady) {
    SetupToolRow row;
    row.name = name;
    row.status = doneLine(isReady, PanelText::tr("Ready"), PanelText::tr("Missing"));
    return row;
}

} // namespace corvane
