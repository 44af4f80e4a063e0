// The setup wizard over the model: which page is shown, what was typed, and what the pages set off. Each opening begins
// anew at the first page. Owned by the main window's model, on the main thread; the token store and the tools of the
// machine are asked beside it.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneApp/Views/SetupSteps.h"

#include <QObject>

#include <memory>

namespace corvane {

class AppModel;
class DependencySetupModel;

class SetupWizardModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isShowingSetupWizard READ isShowingSetupWizard NOTIFY isShowingSetupWizardChanged)
    Q_PROPERTY(QString step READ stepName NOTIFY stepChanged)
    Q_PROPERTY(QVariantList steps READ steps NOTIFY stepChanged)
    Q_PROPERTY(corvane::SetupFooter footer READ footer NOTIFY stepChanged)
    Q_PROPERTY(QString hfToken READ hfToken WRITE setHfToken NOTIFY huggingFaceChanged)
    Q_PROPERTY(bool canSaveToken READ canSaveToken NOTIFY huggingFaceChanged)
    Q_PROPERTY(corvane::StatusLine tokenLine READ tokenLine NOTIFY huggingFaceChanged)
    Q_PROPERTY(QString hfError READ hfError NOTIFY huggingFaceChanged)
    Q_PROPERTY(corvane::OllamaPanel ollama READ ollama NOTIFY ollamaChanged)
    Q_PROPERTY(bool usesOllama READ usesOllama WRITE setUsesOllama NOTIFY ollamaChanged)
    Q_PROPERTY(QVariantList tools READ tools NOTIFY toolsChanged)
    Q_PROPERTY(bool isHomebrewWanted READ isHomebrewWanted NOTIFY toolsChanged)
    Q_PROPERTY(bool isInstalling READ isInstalling NOTIFY toolsChanged)
    Q_PROPERTY(bool canInstall READ canInstall NOTIFY toolsChanged)
    Q_PROPERTY(QString installationMessage READ installationMessage NOTIFY toolsChanged)
    Q_PROPERTY(bool needsNoTools READ needsNoTools NOTIFY isShowingSetupWizardChanged)

public:
    // Borrows the model, which outlives it.
    explicit SetupWizardModel(AppModel& model, QObject* parent = nullptr);
    ~SetupWizardModel() override;

    [[nodiscard]] bool isShowingSetupWizard() const;
    [[nodiscard]] SetupStep step() const { return m_step; }
    [[nodiscard]] QString stepName() const { return rawValue(m_step); }
    [[nodiscard]] const std::set<SetupStep>& completedSteps() const { return m_completedSteps; }
    [[nodiscard]] QVariantList steps() const;
    [[nodiscard]] SetupFooter footer() const;

    Q_INVOKABLE void goBack();
    Q_INVOKABLE void goNext();
    // Goes on, and counts the step as completed; skipping one is the same.
    Q_INVOKABLE void completeStep();
    // Does nothing before the setup was finished once.
    Q_INVOKABLE void close();
    Q_INVOKABLE void finish();

    // Hugging Face. The token is not read back; while the token store is busy with it no other is saved.
    [[nodiscard]] const QString& hfToken() const { return m_hfToken; }
    void setHfToken(const QString& token);
    [[nodiscard]] bool canSaveToken() const { return !m_hfToken.trimmed().isEmpty(); }
    [[nodiscard]] bool hfTokenSaved() const { return m_hfTokenSaved; }
    [[nodiscard]] StatusLine tokenLine() const;
    [[nodiscard]] const QString& hfError() const { return m_hfError; }
    Q_INVOKABLE void saveHuggingFaceToken();
    Q_INVOKABLE void createAccount();
    Q_INVOKABLE void acceptModelAgreement();
    Q_INVOKABLE void createReadToken();

    // Ollama
    [[nodiscard]] OllamaPanel ollama() const;
    [[nodiscard]] bool usesOllama() const;
    void setUsesOllama(bool uses);
    Q_INVOKABLE void downloadOllama();
    Q_INVOKABLE void refreshOllama();

    // Local tools
    [[nodiscard]] DependencySetupModel& dependencySetup() { return *m_dependencySetup; }
    [[nodiscard]] QVariantList tools() const;
    // There is nothing to install the tools with, as far as has been looked for.
    [[nodiscard]] bool isHomebrewWanted() const;
    [[nodiscard]] bool isInstalling() const;
    [[nodiscard]] bool canInstall() const;
    [[nodiscard]] QString installationMessage() const;
    // Meetings are processed without any of them.
    [[nodiscard]] bool needsNoTools() const;
    Q_INVOKABLE void installMissingTools();
    Q_INVOKABLE void refreshTools();
    Q_INVOKABLE void openHomebrew();

Q_SIGNALS:
    void isShowingSetupWizardChanged();
    void stepChanged();
    void huggingFaceChanged();
    void ollamaChanged();
    void toolsChanged();

private:
    void open();
    void showStep(SetupStep step);
    void setTokenState(bool isSaved, const QString& error);

    AppModel& m_model;
    std::unique_ptr<DependencySetupModel> m_dependencySetup;
    SetupStep m_step = SetupStep::welcome;
    std::set<SetupStep> m_completedSteps;
    QString m_hfToken;
    bool m_hfTokenSaved = false;
    QString m_hfError;
    bool m_isSavingToken = false;
    quint64 m_opening = 0; // the how manieth; what an earlier one asked is out of date
};

} // namespace corvane
