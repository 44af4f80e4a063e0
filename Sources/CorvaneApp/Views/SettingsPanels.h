// The sections of the settings page as values. Pure functions; the view draws the result and decides nothing.
#pragma once

#include "CorvaneApp/Model/NotionPart.h"
#include "CorvaneApp/Views/ProcessingSettingsPanel.h"
#include "CorvaneCore/Services/Ollama.h"
#include "CorvaneCore/Services/UpdateAvailability.h"

#include <QLocale>
#include <QObject>

#include <optional>
#include <vector>

namespace corvane {

// A line of text with a symbol before it. No line where the text is empty.
struct StatusLine {
    Q_GADGET
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString tone MEMBER tone)
    Q_PROPERTY(QString text MEMBER text)

public:
    QString iconName;
    QString tone; // "accent", "positive", "negative" or "secondary"
    QString text;

    friend bool operator==(const StatusLine&, const StatusLine&) = default;
};

// A filled tick for what is done, a circle for what is not yet.
[[nodiscard]] StatusLine doneLine(bool isDone, const QString& done, const QString& open);
[[nodiscard]] StatusLine huggingFaceTokenLine(bool isStored);
[[nodiscard]] StatusLine notionTokenLine(bool isStored);

struct OllamaPanel {
    Q_GADGET
    Q_PROPERTY(corvane::StatusLine title MEMBER title)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(QString nextStep MEMBER nextStep)
    Q_PROPERTY(QString nextStepKind MEMBER nextStepKind)

public:
    StatusLine title;
    QString detail;
    QString nextStep;     // what the user can do; empty where there is nothing
    QString nextStepKind; // "link" to Ollama's download page, "command" to be copied, or "text"

    friend bool operator==(const OllamaPanel&, const OllamaPanel&) = default;
};

[[nodiscard]] OllamaPanel ollamaPanel(OllamaState state);
[[nodiscard]] QString ollamaPullCommand();

// What decides about the controls of the Notion section.
struct NotionPanelState {
    bool hasToken = false;
    bool isFetching = false;
    QString databaseURL;
    QString databaseTitle;
};

[[nodiscard]] bool canSyncNotionDatabase(const NotionPanelState& state);
// Empty where it is not shown.
[[nodiscard]] QString shownNotionDatabaseTitle(const NotionPanelState& state);
// Nothing for the first, then each column with its type.
[[nodiscard]] std::vector<PickerChoice> notionPropertyChoices(const std::vector<NotionPropertyOption>& properties);

struct UpdatePanel {
    Q_GADGET
    Q_PROPERTY(corvane::StatusLine version MEMBER version)
    Q_PROPERTY(QString lastChecked MEMBER lastChecked)
    Q_PROPERTY(bool canCheck MEMBER canCheck)
    Q_PROPERTY(corvane::StatusLine status MEMBER status)
    Q_PROPERTY(bool hasUpdate MEMBER hasUpdate)
    Q_PROPERTY(QString published MEMBER published)
    Q_PROPERTY(QString releaseNotes MEMBER releaseNotes)
    Q_PROPERTY(QString errorMessage MEMBER errorMessage)
    Q_PROPERTY(bool hasReleaseNotesPage MEMBER hasReleaseNotesPage)

public:
    StatusLine version;
    QString lastChecked;
    bool canCheck = true;
    StatusLine status; // with an update, the first line of its block; the rest below is its other lines
    bool hasUpdate = false;
    QString published;
    QString releaseNotes;
    QString errorMessage;
    bool hasReleaseNotesPage = false;

    friend bool operator==(const UpdatePanel&, const UpdatePanel&) = default;
};

// What is known of updates. `errorMessage` is that of a later check, which may have failed.
[[nodiscard]] UpdatePanel updatePanel(const AppVersion& version, const UpdateCheckState& state,
                                      const std::optional<QDateTime>& lastCheckAt,
                                      const std::optional<QString>& errorMessage, const QLocale& locale);

[[nodiscard]] std::vector<PickerChoice> defaultSpeakerCountModeChoices();

} // namespace corvane
