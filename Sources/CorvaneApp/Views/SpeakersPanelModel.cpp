#include "CorvaneApp/Views/SpeakersPanelModel.h"

#include "CorvaneApp/Views/PanelText.h"

#include <utility>

namespace corvane {

SpeakersPanelModel::SpeakersPanelModel(CreateProfile createProfile, QObject* parent)
    : QObject(parent), m_createProfile(std::move(createProfile)) {}

QString SpeakersPanelModel::title() {
    return PanelText::tr("Speakers");
}

void SpeakersPanelModel::openSpeakerContext(const QString& speaker) {
    if (m_expanded.insert(speaker).second)
        Q_EMIT expandedSpeakerContextsChanged();
}

void SpeakersPanelModel::closeSpeakerContext(const QString& speaker) {
    if (m_expanded.erase(speaker) > 0)
        Q_EMIT expandedSpeakerContextsChanged();
}

void SpeakersPanelModel::setSpeakerProfileDisplayName(const QString& text) {
    setDialog(m_pendingSpeaker, text);
}

bool SpeakersPanelModel::canCreate() const {
    return m_pendingSpeaker && !m_displayName.trimmed().isEmpty();
}

ProfileCreationDialog SpeakersPanelModel::profileCreationDialog() const {
    ProfileCreationDialog dialog;
    dialog.title = PanelText::tr("Create Speaker Profile");
    dialog.fieldLabel = PanelText::tr("Display name");
    dialog.message = PanelText::tr("Choose the normalized display name for this voice profile.");
    dialog.createButton.text = PanelText::tr("Create");
    dialog.createButton.isEnabled = canCreate();
    dialog.cancelButton.text = PanelText::tr("Cancel");
    return dialog;
}

void SpeakersPanelModel::beginProfileCreation(const QString& speaker, const SpeakerNames& names) {
    const auto name = names.find(speaker);
    setDialog(speaker, name == names.end() ? QStringLiteral("") : name->second.trimmed());
}

void SpeakersPanelModel::cancelProfileCreation() {
    setDialog(std::nullopt, QStringLiteral(""));
}

void SpeakersPanelModel::confirmProfileCreation() {
    if (!canCreate())
        return;
    // Copies: what is called may change the model, and the model's change may reach this dialog.
    const QString speaker = *m_pendingSpeaker;
    const QString displayName = m_displayName;
    m_createProfile(speaker, displayName);
    cancelProfileCreation();
}

void SpeakersPanelModel::setDialog(std::optional<QString> speaker, const QString& displayName) {
    const bool couldCreate = canCreate();
    const bool isOtherSpeaker = m_pendingSpeaker != speaker;
    const bool isOtherName = m_displayName != displayName;
    // All before the first signal, so that a view that opens the dialog at one of them finds the right text in it.
    m_pendingSpeaker = std::move(speaker);
    m_displayName = displayName;
    const bool isOtherAnswer = couldCreate != canCreate();
    if (isOtherName)
        Q_EMIT speakerProfileDisplayNameChanged();
    if (isOtherAnswer)
        Q_EMIT canCreateChanged();
    if (isOtherSpeaker)
        Q_EMIT speakerPendingProfileCreationChanged();
}

} // namespace corvane
