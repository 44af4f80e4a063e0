#include "CorvaneApp/Views/SpeakerProfilesPageModel.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/PanelText.h"

#include <cmath>
#include <utility>

namespace corvane {

SpeakerProfilesPageModel::SpeakerProfilesPageModel(AppModel& model, std::chrono::milliseconds saveDelay,
                                                   QObject* parent)
    : QObject(parent),
      m_model(model),
      m_saveDelay(saveDelay),
      m_profiles([](const SpeakerProfileRow& row) { return row.profileID(); }) {
    const VoiceProfilesPart& voices = m_model.voiceProfiles();
    connect(&voices, &VoiceProfilesPart::speakerProfilesChanged, this, &SpeakerProfilesPageModel::takeProfiles);
    connect(&voices, &VoiceProfilesPart::voiceProfileMatchingEnabledChanged, this,
            &SpeakerProfilesPageModel::matchingChanged);
    connect(&voices, &VoiceProfilesPart::voiceProfileMatchingThresholdChanged, this,
            &SpeakerProfilesPageModel::matchingChanged);
}

SpeakerProfilesPageModel::~SpeakerProfilesPageModel() {
    leave();
}

void SpeakerProfilesPageModel::appear() {
    if (std::exchange(m_isShown, true))
        return;
    m_model.reloadSpeakerProfiles();
    takeProfiles();
}

void SpeakerProfilesPageModel::leave() {
    if (!m_isShown)
        return;
    while (!m_rows.empty())
        endRow(m_rows.begin()->first);
    m_isShown = false;
    m_profiles.replace({});
    setSortMode(rawText(SpeakerProfileSortMode::createdDescending));
    setNewDisplayName(QString());
    setNewNotes(QString());
    setPendingDeletion(std::nullopt);
    setShowDeleteAllConfirmation(false);
}

std::vector<SpeakerProfileRow> SpeakerProfilesPageModel::makeRows() const {
    std::vector<SpeakerProfileRow> rows;
    for (SpeakerProfileSummary& summary :
         sortedSpeakerProfiles(m_model.voiceProfiles().speakerProfiles(), m_sortMode, QLocale())) {
        SpeakerProfileRow row;
        row.summary = std::move(summary);
        rows.push_back(std::move(row));
    }
    return rows;
}

void SpeakerProfilesPageModel::takeProfiles() {
    if (m_isShown)
        m_profiles.update(makeRows());
}

void SpeakerProfilesPageModel::refresh() {
    m_model.reloadSpeakerProfiles();
}

// In another order nearly every row is elsewhere: moving thousands one by one would take the view seconds.
void SpeakerProfilesPageModel::setSortMode(const QString& text) {
    const auto mode = speakerProfileSortMode(text);
    if (!mode || mode == m_sortMode)
        return;
    m_sortMode = *mode;
    if (m_isShown)
        m_profiles.replace(makeRows());
    Q_EMIT sortModeChanged();
}

void SpeakerProfilesPageModel::setNewDisplayName(const QString& text) {
    if (std::exchange(m_newDisplayName, text) != text)
        Q_EMIT newProfileChanged();
}

void SpeakerProfilesPageModel::setNewNotes(const QString& text) {
    if (std::exchange(m_newNotes, text) != text)
        Q_EMIT newProfileChanged();
}

void SpeakerProfilesPageModel::createProfile() {
    if (!canCreate())
        return;
    m_model.createSpeakerProfile(m_newDisplayName, m_newNotes);
    setNewDisplayName(QString());
    setNewNotes(QString());
}

bool SpeakerProfilesPageModel::isMatchingEnabled() const {
    return m_model.voiceProfiles().voiceProfileMatchingEnabled();
}

void SpeakerProfilesPageModel::setMatchingEnabled(bool enabled) {
    if (enabled == isMatchingEnabled())
        return;
    m_model.updateVoiceProfileMatchingEnabled(enabled);
    Q_EMIT matchingChanged(); // also where it was refused, so that the switch shows what is in force
}

QString SpeakerProfilesPageModel::matchingText() const {
    return isMatchingEnabled() ? PanelText::tr("Enabled") : PanelText::tr("Disabled");
}

double SpeakerProfilesPageModel::threshold() const {
    return m_model.voiceProfiles().voiceProfileMatchingThreshold();
}

void SpeakerProfilesPageModel::setThreshold(double threshold) {
    const double inHundredths = std::round(threshold * 100) / 100;
    if (inHundredths == this->threshold())
        return;
    m_model.updateVoiceProfileMatchingThreshold(inHundredths);
    Q_EMIT matchingChanged();
}

QString SpeakerProfilesPageModel::thresholdText() const {
    return QLocale().toString(threshold(), 'f', 2);
}

int SpeakerProfilesPageModel::beginRow(const QString& profileID) {
    const QUuid id(profileID);
    const auto profile = m_model.voiceProfiles().find(id);
    if (!profile)
        return 0;
    SpeakerProfileEditing::Callbacks callbacks{
        .stored = [this, id] { return m_model.voiceProfiles().find(id); },
        .onUpdate = [this](const SpeakerProfile& stored, const QString& displayName, const QString& notes,
                           bool enabled) { m_model.updateSpeakerProfile(stored, displayName, notes, enabled); },
        .onToggle = [this](const SpeakerProfile& stored,
                           bool enabled) { m_model.setSpeakerProfileEnabled(stored, enabled); }};
    m_rows[++m_lastRow] = std::make_unique<SpeakerProfileEditing>(*profile, std::move(callbacks), m_saveDelay);
    return m_lastRow;
}

void SpeakerProfilesPageModel::endRow(int row) {
    // Taken out first: saving changes the list, and with it which rows there are.
    const auto node = m_rows.extract(row);
    if (!node.empty())
        node.mapped()->finish();
}

SpeakerProfileEditing* SpeakerProfilesPageModel::editing(int row) const {
    const auto found = m_rows.find(row);
    return found == m_rows.end() ? nullptr : found->second.get();
}

void SpeakerProfilesPageModel::setDisplayName(int row, const QString& text) {
    if (auto* edited = editing(row))
        edited->setDisplayName(text);
}

void SpeakerProfilesPageModel::setNotes(int row, const QString& text) {
    if (auto* edited = editing(row))
        edited->setNotes(text);
}

void SpeakerProfilesPageModel::toggle(int row, bool enabled) {
    if (auto* edited = editing(row))
        edited->toggle(enabled);
}

void SpeakerProfilesPageModel::saveNow(int row) {
    if (auto* edited = editing(row))
        edited->saveNow();
}

void SpeakerProfilesPageModel::deleteProfile(const QString& profileID) {
    setPendingDeletion(m_model.voiceProfiles().find(QUuid(profileID)));
}

void SpeakerProfilesPageModel::confirmDeletion() {
    const auto profile = m_profilePendingDeletion;
    setPendingDeletion(std::nullopt);
    if (profile)
        m_model.deleteSpeakerProfile(*profile);
}

void SpeakerProfilesPageModel::cancelDeletion() {
    setPendingDeletion(std::nullopt);
}

void SpeakerProfilesPageModel::deleteAll() {
    setShowDeleteAllConfirmation(true);
}

void SpeakerProfilesPageModel::confirmDeleteAll() {
    setShowDeleteAllConfirmation(false);
    m_model.deleteAllSpeakerProfiles();
}

void SpeakerProfilesPageModel::cancelDeleteAll() {
    setShowDeleteAllConfirmation(false);
}

void SpeakerProfilesPageModel::setPendingDeletion(std::optional<SpeakerProfile> profile) {
    const bool wasAsking = isAskingDeletion();
    m_profilePendingDeletion = std::move(profile);
    if (wasAsking != isAskingDeletion())
        Q_EMIT confirmationChanged();
}

void SpeakerProfilesPageModel::setShowDeleteAllConfirmation(bool shows) {
    if (std::exchange(m_showDeleteAllConfirmation, shows) != shows)
        Q_EMIT confirmationChanged();
}

} // namespace corvane
