#include "CorvaneApp/Model/VoiceProfilesPart.h"

#include <algorithm>

namespace corvane {

VoiceProfilesPart::VoiceProfilesPart(QString database, std::shared_ptr<const Clock> clock, QObject* parent)
    : ModelPart(parent), m_database(std::move(database)), m_clock(std::move(clock)) {}

std::optional<SpeakerProfile> VoiceProfilesPart::find(const QUuid& profileID) const {
    const auto summary = std::find_if(m_profiles.begin(), m_profiles.end(),
                                      [&](const auto& one) { return one.profile.id == profileID; });
    return summary == m_profiles.end() ? std::nullopt : std::optional(summary->profile);
}

LocalStore& VoiceProfilesPart::speakerStore() {
    if (!m_store)
        m_store = std::make_unique<LocalStore>(m_database, m_clock);
    return *m_store;
}

void VoiceProfilesPart::reload() {
    const LocalStore& store = speakerStore();
    publish(m_profiles, store.speakerProfiles(), "speakerProfiles", &VoiceProfilesPart::speakerProfilesChanged);
    setMatchingEnabled(store.speakerProfileMatchingEnabled());
    setMatchingThreshold(store.speakerProfileMatchingThreshold());
}

void VoiceProfilesPart::setMatchingEnabled(bool enabled) {
    publish(m_matchingEnabled, enabled, "voiceProfileMatchingEnabled",
            &VoiceProfilesPart::voiceProfileMatchingEnabledChanged);
}

void VoiceProfilesPart::setMatchingThreshold(double threshold) {
    publish(m_matchingThreshold, threshold, "voiceProfileMatchingThreshold",
            &VoiceProfilesPart::voiceProfileMatchingThresholdChanged);
}

} // namespace corvane
