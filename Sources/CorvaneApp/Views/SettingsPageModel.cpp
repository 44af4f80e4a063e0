#include "CorvaneApp/Views/SettingsPageModel.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Services/WebAddresses.h"

namespace corvane {

SettingsPageModel::SettingsPageModel(AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
    follow();
}

void SettingsPageModel::follow() {
    using Page = SettingsPageModel;
    const DiarizationDefaultsPart* defaults = &m_model.diarizationDefaults();
    using Defaults = DiarizationDefaultsPart;
    connect(defaults, &Defaults::defaultDiarizationEnabledChanged, this, &Page::diarizationDefaultsChanged);
    connect(defaults, &Defaults::defaultSpeakerCountModeChanged, this, &Page::diarizationDefaultsChanged);
    connect(defaults, &Defaults::defaultSpeakerCountChanged, this, &Page::diarizationDefaultsChanged);
    connect(defaults, &Defaults::defaultMinSpeakerCountChanged, this, &Page::diarizationDefaultsChanged);
    connect(defaults, &Defaults::defaultMaxSpeakerCountChanged, this, &Page::diarizationDefaultsChanged);

    connect(&m_model.localModel(), &LocalModelPart::ollamaStatusChanged, this, &Page::ollamaChanged);
    connect(&m_model.localModel(), &LocalModelPart::useOllamaSpeakerContextChanged, this, &Page::ollamaChanged);

    const NotionPart* notion = &m_model.notion();
    connect(notion, &NotionPart::hasNotionTokenChanged, this, &Page::notionChanged);
    connect(notion, &NotionPart::settingsChanged, this, &Page::notionChanged);
    connect(notion, &NotionPart::isFetchingNotionDatabaseChanged, this, &Page::notionChanged);
    // The choices first: a picker looks its value up among them.
    connect(notion, &NotionPart::notionDatabasePropertiesChanged, this, &Page::notionPropertiesChanged);
    connect(notion, &NotionPart::notionDatabasePropertiesChanged, this, &Page::notionChanged);

    const UpdatesPart* updates = &m_model.updates();
    connect(updates, &UpdatesPart::automaticUpdateChecksEnabledChanged, this, &Page::updatesChanged);
    connect(updates, &UpdatesPart::lastUpdateCheckAtChanged, this, &Page::updatesChanged);
    connect(updates, &UpdatesPart::updateCheckStateChanged, this, &Page::updatesChanged);
    connect(updates, &UpdatesPart::updateCheckErrorMessageChanged, this, &Page::updatesChanged);

    // The wizard may have saved a token over the page.
    connect(&m_model.setup(), &SetupPart::isShowingSetupWizardChanged, this, [this] {
        if (m_isShown && !m_model.setup().isShowingSetupWizard())
            load();
    });
}

void SettingsPageModel::appear() {
    m_isShown = true;
    load();
    static_cast<void>(m_model.refreshNotionSettings());
    static_cast<void>(m_model.refreshOllamaStatus());
    m_model.checkForUpdatesIfNeeded();
}

void SettingsPageModel::leave() {
    m_isShown = false;
    m_notionOutcome = {};
    setToken({});
    setNotionToken({});
}

void SettingsPageModel::setToken(const QString& token) {
    if (m_token == token)
        return;
    m_token = token;
    Q_EMIT huggingFaceChanged();
}

void SettingsPageModel::setStoredToken(bool isStored, const QString& errorMessage) {
    if (m_hasStoredToken == isStored && m_errorMessage == errorMessage)
        return;
    m_hasStoredToken = isStored;
    m_errorMessage = errorMessage;
    Q_EMIT huggingFaceChanged();
}

void SettingsPageModel::load() {
    m_model.hasHuggingFaceToken().then(this, [this, question = ++m_tokenQuestion](std::optional<bool> isStored) {
        if (question == m_tokenQuestion)
            setStoredToken(isStored.value_or(m_hasStoredToken),
                           isStored ? QString() : PanelText::tr("Could not check token status in Keychain."));
    });
}

void SettingsPageModel::save() {
    if (!canSaveToken() || m_isChangingToken)
        return;
    const QString typed = m_token;
    auto saved = m_model.saveHuggingFaceToken(typed.trimmed()).then(this, [this, typed](bool isSaved) {
        // Another token may be on its way into the field.
        if (isSaved && m_token == typed)
            setToken({});
        return isSaved;
    });
    changeToken(saved, true, PanelText::tr("Could not save token to Keychain."));
}

void SettingsPageModel::remove() {
    if (!m_isChangingToken)
        changeToken(m_model.deleteHuggingFaceToken(), false, PanelText::tr("Could not remove token from Keychain."));
}

void SettingsPageModel::changeToken(QFuture<bool> change, bool isStoredThen, const QString& failure) {
    m_isChangingToken = true;
    change.then(this, [this, isStoredThen, failure](bool isDone) {
        ++m_tokenQuestion;
        m_isChangingToken = false;
        setStoredToken(isDone ? isStoredThen : m_hasStoredToken, isDone ? QString() : failure);
    });
}

bool SettingsPageModel::isDiarizationEnabled() const {
    return m_model.diarizationDefaults().defaultDiarizationEnabled();
}

void SettingsPageModel::setDiarizationEnabled(bool enabled) {
    m_model.diarizationDefaults().updateDefaultDiarizationEnabled(enabled);
}

QString SettingsPageModel::speakerCountMode() const {
    return m_model.diarizationDefaults().defaultSpeakerCountMode();
}

void SettingsPageModel::setSpeakerCountMode(const QString& mode) {
    m_model.diarizationDefaults().updateDefaultSpeakerCountMode(mode);
}

QVariantList SettingsPageModel::speakerCountSteppers() const {
    const DiarizationDefaultsPart& defaults = m_model.diarizationDefaults();
    return variantList(corvane::speakerCountSteppers(defaults.defaultSpeakerCountMode(), defaults.defaultSpeakerCount(),
                                                     defaults.defaultMinSpeakerCount(),
                                                     defaults.defaultMaxSpeakerCount()));
}

void SettingsPageModel::step(int field, qint64 value) {
    DiarizationDefaultsPart& defaults = m_model.diarizationDefaults();
    switch (static_cast<PanelStepper::Field>(field)) {
    case PanelStepper::Field::count:
        defaults.updateDefaultSpeakerCount(value);
        break;
    case PanelStepper::Field::min:
        defaults.updateDefaultMinSpeakerCount(value);
        break;
    case PanelStepper::Field::max:
        defaults.updateDefaultMaxSpeakerCount(value);
        break;
    }
}

OllamaPanel SettingsPageModel::ollama() const {
    return ollamaPanel(m_model.localModel().ollamaStatus().state);
}

bool SettingsPageModel::usesOllama() const {
    return m_model.localModel().useOllamaSpeakerContext();
}

void SettingsPageModel::setUsesOllama(bool uses) {
    m_model.localModel().updateUseOllamaSpeakerContext(uses);
}

void SettingsPageModel::refreshOllama() {
    static_cast<void>(m_model.refreshOllamaStatus());
}

void SettingsPageModel::openOllamaDownload() {
    m_model.openWebPage(webAddresses::ollamaDownload);
}

void SettingsPageModel::setNotionToken(const QString& token) {
    if (m_notionToken == token)
        return;
    m_notionToken = token;
    Q_EMIT notionChanged();
}

bool SettingsPageModel::hasNotionToken() const {
    return m_model.notion().hasNotionToken();
}

QString SettingsPageModel::notionDatabaseURL() const {
    return m_model.notion().notionDatabaseURL();
}

void SettingsPageModel::setNotionDatabaseURL(const QString& url) {
    if (url != notionDatabaseURL())
        m_model.updateNotionDatabaseURL(url);
}

bool SettingsPageModel::isFetchingNotion() const {
    return m_model.notion().isFetchingNotionDatabase();
}

NotionPanelState SettingsPageModel::notionState() const {
    const NotionPart& notion = m_model.notion();
    return {.hasToken = notion.hasNotionToken(),
            .isFetching = notion.isFetchingNotionDatabase(),
            .databaseURL = notion.notionDatabaseURL(),
            .databaseTitle = notion.notionDatabaseTitle()};
}

bool SettingsPageModel::hasNotionProperties() const {
    return !m_model.notion().notionDatabaseProperties().empty();
}

QVariantList SettingsPageModel::notionProperties() const {
    return variantList(notionPropertyChoices(m_model.notion().notionDatabaseProperties()));
}

QStringList SettingsPageModel::notionMappings() {
    return {PanelText::tr("Meeting ID"), PanelText::tr("Participants"), PanelText::tr("Meeting summary")};
}

QStringList SettingsPageModel::mappedNotionProperties() const {
    const NotionPart& notion = m_model.notion();
    return {notion.notionMeetingIDPropertyName(), notion.notionParticipantsPropertyName(),
            notion.notionSummaryPropertyName()};
}

void SettingsPageModel::saveNotion() {
    const QString token = m_notionToken.trimmed();
    if (token.isEmpty())
        return;
    tellNotionOutcome(m_model.saveNotionToken(token));
    setNotionToken({});
}

void SettingsPageModel::removeNotionToken() {
    tellNotionOutcome(m_model.deleteNotionToken());
}

void SettingsPageModel::syncNotionDatabase() {
    if (canSyncNotion())
        tellNotionOutcome(m_model.fetchNotionDatabaseTitle());
}

void SettingsPageModel::tellNotionOutcome(QFuture<bool> outcome) {
    outcome.then(this, [this](bool isDone) {
        if (!m_isShown)
            return;
        m_notionOutcome.text = m_model.status().statusMessage();
        m_notionOutcome.tone = isDone ? QStringLiteral("secondary") : QStringLiteral("negative");
        Q_EMIT notionChanged();
    });
}

void SettingsPageModel::mapNotionProperty(int mapping, const QString& property) {
    NotionPart& notion = m_model.notion();
    switch (static_cast<NotionMapping>(mapping)) {
    case NotionMapping::meetingID:
        notion.updateNotionMeetingIDPropertyName(property);
        break;
    case NotionMapping::participants:
        notion.updateNotionParticipantsPropertyName(property);
        break;
    case NotionMapping::summary:
        notion.updateNotionSummaryPropertyName(property);
        break;
    }
}

UpdatePanel SettingsPageModel::updates() const {
    const UpdatesPart& updates = m_model.updates();
    const UpdateCheckState& state = updates.updateCheckState();
    UpdatePanel panel = updatePanel(updates.currentAppVersion(), state, updates.lastUpdateCheckAt(),
                                    updates.updateCheckErrorMessage(), QLocale());
    // A build that was told no address asked nobody: that is worth saying, but nothing has gone wrong.
    if (state.kind == UpdateCheckState::Kind::failed && !updates.settings().hasOwnManifestURL())
        panel.status = {
            .iconName = QStringLiteral("info.circle"), .tone = QStringLiteral("secondary"), .text = state.message};
    return panel;
}

bool SettingsPageModel::checksAutomatically() const {
    return m_model.updates().automaticUpdateChecksEnabled();
}

void SettingsPageModel::setChecksAutomatically(bool checks) {
    m_model.updateAutomaticUpdateChecksEnabled(checks);
}

void SettingsPageModel::checkForUpdates() {
    static_cast<void>(m_model.checkForUpdates());
}

void SettingsPageModel::downloadUpdate() {
    if (const auto& manifest = m_model.updates().updateCheckState().manifest)
        m_model.openWebPage(manifest->downloadURL);
}

void SettingsPageModel::openReleaseNotes() {
    const auto& manifest = m_model.updates().updateCheckState().manifest;
    if (manifest && manifest->releaseNotesURL)
        m_model.openWebPage(*manifest->releaseNotesURL);
}

void SettingsPageModel::runSetupWizard() {
    m_model.setup().showSetupWizard();
}

} // namespace corvane
