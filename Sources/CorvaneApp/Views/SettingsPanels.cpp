#include "CorvaneApp/Views/SettingsPanels.h"

#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Services/UpdateText.h"

namespace corvane {

namespace {

StatusLine line(const char* icon, const char* tone, const QString& text) {
    StatusLine made;
    made.iconName = QString::fromLatin1(icon);
    made.tone = QString::fromLatin1(tone);
    made.text = text;
    return made;
}

StatusLine ollamaTitle(OllamaState state) {
    const QString title = ollamaStatusTitle(state);
    switch (state) {
    case OllamaState::unknown:
    case OllamaState::checking:
        break;
    case OllamaState::ready:
        return line("checkmark.circle.fill", "positive", title);
    case OllamaState::modelMissing:
    case OllamaState::installed:
        return line("exclamationmark.triangle.fill", "accent", title);
    case OllamaState::missing:
        return line("xmark.circle.fill", "secondary", title);
    }
    return line("circle.dotted", "secondary", title);
}

StatusLine updateStatusLine(const UpdateCheckState& state) {
    const QString text = updateStatusText(state);
    switch (state.kind) {
    case UpdateCheckState::Kind::available:
        return line("exclamationmark.circle.fill", "accent", text);
    case UpdateCheckState::Kind::failed:
        return line("", "negative", text);
    default:
        return line("", "secondary", text);
    }
}

void addUpdate(UpdatePanel& panel, const UpdateManifest& manifest, const std::optional<QString>& errorMessage,
               const QLocale& locale) {
    panel.hasUpdate = true;
    panel.published = publishedText(manifest, locale).value_or(QString());
    panel.releaseNotes = manifest.releaseNotes.value_or(QString());
    panel.errorMessage = errorMessage.value_or(QString());
    panel.hasReleaseNotesPage = manifest.releaseNotesURL.has_value();
}

} // namespace

StatusLine doneLine(bool isDone, const QString& done, const QString& open) {
    return isDone ? line("checkmark.circle.fill", "positive", done) : line("circle", "secondary", open);
}

StatusLine huggingFaceTokenLine(bool isStored) {
    return doneLine(isStored, PanelText::tr("HF_TOKEN is saved in keychain."),
                    PanelText::tr("HF_TOKEN is not saved yet."));
}

StatusLine notionTokenLine(bool isStored) {
    return doneLine(isStored, PanelText::tr("Notion token is saved in keychain."),
                    PanelText::tr("Notion token is not saved yet."));
}

QString ollamaPullCommand() {
    return QStringLiteral("ollama pull ") + ollamaModelName;
}

OllamaPanel ollamaPanel(OllamaState state) {
    OllamaPanel panel;
    panel.title = ollamaTitle(state);
    panel.detail = ollamaStatusDetail(state);
    if (state == OllamaState::missing) {
        panel.nextStep = PanelText::tr("Install Ollama");
        panel.nextStepKind = QStringLiteral("link");
    } else if (state == OllamaState::installed) {
        panel.nextStep = PanelText::tr("Open Ollama, then click the refresh button.");
        panel.nextStepKind = QStringLiteral("text");
    } else if (state == OllamaState::modelMissing) {
        panel.nextStep = ollamaPullCommand();
        panel.nextStepKind = QStringLiteral("command");
    }
    return panel;
}

bool canSyncNotionDatabase(const NotionPanelState& state) {
    return !state.isFetching && state.hasToken && !state.databaseURL.isEmpty();
}

QString shownNotionDatabaseTitle(const NotionPanelState& state) {
    return state.hasToken ? state.databaseTitle : QString();
}

std::vector<PickerChoice> notionPropertyChoices(const std::vector<NotionPropertyOption>& properties) {
    std::vector<PickerChoice> choices{{PanelText::tr("Not mapped"), QString()}};
    for (const NotionPropertyOption& property : properties)
        choices.push_back({QStringLiteral("%1 (%2)").arg(property.name, property.type), property.name});
    return choices;
}

UpdatePanel updatePanel(const AppVersion& version, const UpdateCheckState& state,
                        const std::optional<QDateTime>& lastCheckAt, const std::optional<QString>& errorMessage,
                        const QLocale& locale) {
    const bool isAvailable = state.kind == UpdateCheckState::Kind::available;
    UpdatePanel panel;
    panel.version = doneLine(!isAvailable, currentVersionText(version), currentVersionText(version));
    panel.lastChecked = lastCheckedText(lastCheckAt, locale);
    panel.canCheck = state.kind != UpdateCheckState::Kind::checking;
    panel.status = updateStatusLine(state);
    if (isAvailable && state.manifest)
        addUpdate(panel, *state.manifest, errorMessage, locale);
    return panel;
}

std::vector<PickerChoice> defaultSpeakerCountModeChoices() {
    return {{PanelText::tr("Fixed"), speakerCountMode::fixed},
            {PanelText::tr("Range"), speakerCountMode::range},
            {PanelText::tr("Auto"), speakerCountMode::automatic}};
}

} // namespace corvane
