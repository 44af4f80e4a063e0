#include "CorvaneApp/Views/SetupWizardModel.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Services/WebAddresses.h"

namespace corvane {

SetupWizardModel::SetupWizardModel(AppModel& model, QObject* parent)
    : QObject(parent), m_model(model), m_dependencySetup(model.makeDependencySetup()) {
    using Wizard = SetupWizardModel;
    connect(&m_model.localModel(), &LocalModelPart::ollamaStatusChanged, this, &Wizard::ollamaChanged);
    connect(&m_model.localModel(), &LocalModelPart::useOllamaSpeakerContextChanged, this, &Wizard::ollamaChanged);
    connect(m_dependencySetup.get(), &DependencySetupModel::changed, this, &Wizard::toolsChanged);
    connect(&m_model.setup(), &SetupPart::isShowingSetupWizardChanged, this, [this] {
        if (isShowingSetupWizard())
            open();
        else
            setHfToken({});
        Q_EMIT isShowingSetupWizardChanged();
    });
    if (isShowingSetupWizard())
        open();
}

SetupWizardModel::~SetupWizardModel() = default;

bool SetupWizardModel::isShowingSetupWizard() const {
    return m_model.setup().isShowingSetupWizard();
}

void SetupWizardModel::open() {
    m_completedSteps.clear();
    showStep(SetupStep::welcome);
    m_hfToken.clear();
    setTokenState(false, {});
    m_model.hasHuggingFaceToken().then(this, [this, opening = ++m_opening](std::optional<bool> isStored) {
        if (opening == m_opening)
            setTokenState(isStored.value_or(false), {});
    });
    m_dependencySetup->reset();
    m_dependencySetup->refresh();
}

QVariantList SetupWizardModel::steps() const {
    return variantList(setupStepRows(m_step, m_completedSteps, m_model.setup().setupCompleted()));
}

SetupFooter SetupWizardModel::footer() const {
    return setupFooter(m_step, m_model.setup().setupCompleted());
}

void SetupWizardModel::showStep(SetupStep step) {
    m_step = step;
    Q_EMIT stepChanged();
}

void SetupWizardModel::goBack() {
    showStep(stepBefore(m_step));
}

void SetupWizardModel::goNext() {
    showStep(stepAfter(m_step));
}

void SetupWizardModel::completeStep() {
    m_completedSteps.insert(m_step);
    goNext();
}

void SetupWizardModel::close() {
    m_model.setup().closeSetupWizard();
}

void SetupWizardModel::finish() {
    m_model.setup().completeSetup();
}

void SetupWizardModel::setHfToken(const QString& token) {
    if (m_hfToken == token)
        return;
    m_hfToken = token;
    Q_EMIT huggingFaceChanged();
}

void SetupWizardModel::setTokenState(bool isSaved, const QString& error) {
    m_hfTokenSaved = isSaved;
    m_hfError = error;
    Q_EMIT huggingFaceChanged();
}

StatusLine SetupWizardModel::tokenLine() const {
    return doneLine(m_hfTokenSaved, PanelText::tr("Hugging Face token is saved."),
                    PanelText::tr("No Hugging Face token saved yet."));
}

void SetupWizardModel::saveHuggingFaceToken() {
    const QString typed = m_hfToken;
    if (!canSaveToken() || m_isSavingToken)
        return;
    m_isSavingToken = true;
    m_model.saveHuggingFaceToken(typed.trimmed()).then(this, [this, typed, opening = ++m_opening](bool isSaved) {
        m_isSavingToken = false;
        if (opening != m_opening)
            return;
        if (!isSaved) {
            setTokenState(m_hfTokenSaved, PanelText::tr("Could not save the token to Keychain."));
            return;
        }
        // Another token may be on its way into the field.
        if (m_hfToken == typed)
            m_hfToken.clear();
        setTokenState(true, {});
        m_completedSteps.insert(SetupStep::huggingFace);
        Q_EMIT stepChanged();
    });
}

void SetupWizardModel::createAccount() {
    m_model.openWebPage(webAddresses::huggingFaceAccount);
}

void SetupWizardModel::acceptModelAgreement() {
    m_model.openWebPage(webAddresses::huggingFaceModel);
}

void SetupWizardModel::createReadToken() {
    m_model.openWebPage(webAddresses::huggingFaceTokens);
}

OllamaPanel SetupWizardModel::ollama() const {
    return setupOllamaPanel(m_model.localModel().ollamaStatus().state);
}

bool SetupWizardModel::usesOllama() const {
    return m_model.localModel().useOllamaSpeakerContext();
}

void SetupWizardModel::setUsesOllama(bool uses) {
    m_model.localModel().updateUseOllamaSpeakerContext(uses);
}

void SetupWizardModel::downloadOllama() {
    m_model.openWebPage(webAddresses::ollamaDownload);
}

void SetupWizardModel::refreshOllama() {
    static_cast<void>(m_model.refreshOllamaStatus());
}

QVariantList SetupWizardModel::tools() const {
    const DependencySetupModel& setup = *m_dependencySetup;
    return variantList(std::vector{setupToolRow(QStringLiteral("python3"), setup.pythonReady()),
                                   setupToolRow(QStringLiteral("uv"), setup.uvReady()),
                                   setupToolRow(QStringLiteral("ffmpeg"), setup.ffmpegReady()),
                                   setupToolRow(QStringLiteral("whispermlx"), setup.whisperReady())});
}

bool SetupWizardModel::isHomebrewWanted() const {
    const DependencySetupModel& setup = *m_dependencySetup;
    return setup.hasLooked() && !setup.brewReady() && !setup.distributionManagerReady();
}

bool SetupWizardModel::isInstalling() const {
    return m_dependencySetup->isRunning();
}

bool SetupWizardModel::canInstall() const {
    return !m_dependencySetup->isRunning() && !m_dependencySetup->allReady();
}

QString SetupWizardModel::installationMessage() const {
    // A view lays out every character of it; what went wrong stands at the end.
    constexpr qsizetype shown = 20'000;
    const QString& message = m_dependencySetup->message();
    return message.size() > shown ? QStringLiteral("…") + message.right(shown) : message;
}

bool SetupWizardModel::needsNoTools() const {
    return m_model.usesOwnWorker();
}

void SetupWizardModel::installMissingTools() {
    m_dependencySetup->installMissingTools();
}

void SetupWizardModel::refreshTools() {
    m_dependencySetup->refresh();
}

void SetupWizardModel::openHomebrew() {
    m_model.openWebPage(webAddresses::homebrew);
}

} // namespace corvane
