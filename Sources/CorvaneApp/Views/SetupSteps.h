// The pages of the setup wizard, in their order, and which buttons each has. Pure functions.
#pragma once

#include "CorvaneApp/Views/SettingsPanels.h"

#include <array>
#include <set>

namespace corvane {

enum class SetupStep { welcome, huggingFace, ollama, dependencies, finish };

inline constexpr std::array allSetupSteps{SetupStep::welcome, SetupStep::huggingFace, SetupStep::ollama,
                                          SetupStep::dependencies, SetupStep::finish};

// By which the view knows the page.
[[nodiscard]] QString rawValue(SetupStep step);
[[nodiscard]] QString setupStepTitle(SetupStep step);
// The neighbours; at the ends the step itself.
[[nodiscard]] SetupStep stepAfter(SetupStep step);
[[nodiscard]] SetupStep stepBefore(SetupStep step);

// A step in the list beside the pages.
struct SetupStepRow {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(bool isCompleted MEMBER isCompleted)
    Q_PROPERTY(bool isCurrent MEMBER isCurrent)

public:
    QString title;
    QString iconName;
    bool isCompleted = false;
    bool isCurrent = false;

    friend bool operator==(const SetupStepRow&, const SetupStepRow&) = default;
};

[[nodiscard]] std::vector<SetupStepRow> setupStepRows(SetupStep current, const std::set<SetupStep>& completed,
                                                      bool setupCompleted);

// The buttons below every page.
struct SetupFooter {
    Q_GADGET
    Q_PROPERTY(bool canGoBack MEMBER canGoBack)
    Q_PROPERTY(bool hasClose MEMBER hasClose)
    Q_PROPERTY(bool canSkip MEMBER canSkip)
    Q_PROPERTY(QString skipText MEMBER skipText)
    Q_PROPERTY(bool hasContinue MEMBER hasContinue)
    Q_PROPERTY(bool hasFinish MEMBER hasFinish)

public:
    bool canGoBack = true;
    bool hasClose = false;
    bool canSkip = false; // where it cannot be used the skip button is not seen either, but keeps its place
    QString skipText;     // empty: there is none
    bool hasContinue = true;
    bool hasFinish = false;

    friend bool operator==(const SetupFooter&, const SetupFooter&) = default;
};

[[nodiscard]] SetupFooter setupFooter(SetupStep step, bool setupCompleted);

// The wizard has shorter words for it than the settings page.
[[nodiscard]] OllamaPanel setupOllamaPanel(OllamaState state);

// A tool in the list of the page "Local Tools".
struct SetupToolRow {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(corvane::StatusLine status MEMBER status)

public:
    QString name;
    StatusLine status;

    friend bool operator==(const SetupToolRow&, const SetupToolRow&) = default;
};

[[nodiscard]] SetupToolRow setupToolRow(const QString& name, bool isReady);

} // namespace corvane
