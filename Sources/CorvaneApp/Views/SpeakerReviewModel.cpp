#include "CorvaneApp/Views/SpeakerReviewModel.h"

#include "CorvaneApp/Model/AppModel.h"

#include <algorithm>

namespace corvane {

SpeakerReviewModel::SpeakerReviewModel(AppModel& model, QObject* parent)
    : QObject(parent),
      m_model(model),
      m_panel([this](const QString& speaker, const QString& name) {
          m_model.createProfileFromSpeakerVoice(speaker, name);
      }),
      m_cards([](const SpeakerCard& card) { return card.speaker; }) {}

void SpeakerReviewModel::refresh() {
    const auto& result = m_model.detail().transcriptResult();
    const SpeakerReviewPart& review = m_model.speakerReview();
    const SpeakerCardsState state{.speakerMappings = review.speakerMappings(),
                                  .speakerProfileAssignments = review.speakerProfileAssignments(),
                                  .speakerProfileMatches = review.speakerProfileMatches(),
                                  .voiceProfileUpdateMessages = review.voiceProfileUpdateMessages(),
                                  .playingSpeakerExamplesFor = m_model.playback().playingSpeakerExamplesFor(),
                                  .hasAudio = m_model.currentAudioURL().has_value(),
                                  .isRunShown = m_model.detail().lastRunDirectory().has_value(),
                                  .isUpdatingVoiceProfile = review.isUpdatingVoiceProfile(),
                                  .locale = QLocale()};
    m_cards.update(result ? speakerCards(*result, state) : std::vector<SpeakerCard>());
    if (const QString summary = result ? speakerSummary(*result) : QString(); summary != m_summary) {
        m_summary = summary;
        Q_EMIT summaryChanged();
    }
    if (auto menu = profileMenuItems(m_model.voiceProfiles().speakerProfiles()); menu != m_menu) {
        m_menu = std::move(menu);
        Q_EMIT profileMenuChanged();
    }
}

void SpeakerReviewModel::toggleExamples(const QString& speaker) {
    const auto& result = m_model.detail().transcriptResult();
    if (!result)
        return;
    const auto found = std::find_if(result->speakers.begin(), result->speakers.end(),
                                    [&](const TranscriptSpeaker& one) { return one.speaker == speaker; });
    if (found != result->speakers.end())
        m_model.toggleSpeakerExamplesPlayback(TranscriptSpeaker(*found));
}

void SpeakerReviewModel::press(const QString& speaker, int action) {
    const SpeakerCard* shown = card(speaker);
    if (!shown)
        return;
    const auto suggestion = shown->link.suggestion;
    switch (static_cast<SpeakerAction>(action)) {
    case SpeakerAction::removeProfileTag:
        m_model.removeSpeakerProfileAssignment(speaker);
        break;
    case SpeakerAction::acceptSuggestion:
        if (suggestion)
            m_model.acceptSpeakerProfileMatch(*suggestion);
        break;
    case SpeakerAction::rejectSuggestion:
        if (suggestion)
            m_model.rejectSpeakerProfileMatch(*suggestion);
        break;
    case SpeakerAction::none:
        break;
    }
}

void SpeakerReviewModel::setName(const QString& speaker, const QString& name) {
    m_model.updateSpeakerName(speaker, name);
}

void SpeakerReviewModel::chooseFromProfileMenu(const QString& speaker, int item) {
    if (item < 0 || static_cast<std::size_t>(item) >= m_menu.size())
        return;
    const ProfileMenuItem chosen = m_menu[static_cast<std::size_t>(item)];
    if (chosen.kind == ProfileMenuItem::Kind::createProfile)
        m_panel.beginProfileCreation(speaker, m_model.speakerReview().speakerMappings());
    else if (chosen.profile && chosen.isEnabled)
        m_model.addVoiceObservation(speaker, *chosen.profile);
}

const SpeakerCard* SpeakerReviewModel::card(const QString& speaker) const {
    const auto& rows = m_cards.rows();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const SpeakerCard& one) { return one.speaker == speaker; });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace corvane
