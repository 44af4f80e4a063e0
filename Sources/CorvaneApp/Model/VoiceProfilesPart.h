// The people whose voices are known, the two settings of the matching, and the one open store of both. The store's
// errors are the caller's to tell.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/VoiceProfiles/LocalStore.h"

#include <memory>
#include <vector>

namespace corvane {

class VoiceProfilesPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(
        bool voiceProfileMatchingEnabled READ voiceProfileMatchingEnabled NOTIFY voiceProfileMatchingEnabledChanged)
    Q_PROPERTY(double voiceProfileMatchingThreshold READ voiceProfileMatchingThreshold NOTIFY
                   voiceProfileMatchingThresholdChanged)

public:
    VoiceProfilesPart(QString database, std::shared_ptr<const Clock> clock, QObject* parent = nullptr);

    [[nodiscard]] const std::vector<SpeakerProfileSummary>& speakerProfiles() const { return m_profiles; }
    [[nodiscard]] bool voiceProfileMatchingEnabled() const { return m_matchingEnabled; }
    [[nodiscard]] double voiceProfileMatchingThreshold() const { return m_matchingThreshold; }
    [[nodiscard]] std::optional<SpeakerProfile> find(const QUuid& profileID) const;

    // The store, opened when it is first asked for and then kept. Throws StoreError; the next call tries again.
    [[nodiscard]] LocalStore& speakerStore();
    // Reads everything anew. Throws StoreError; what was read before the failure stands.
    void reload();
    void setMatchingEnabled(bool enabled);
    void setMatchingThreshold(double threshold);

Q_SIGNALS:
    void speakerProfilesChanged();
    void voiceProfileMatchingEnabledChanged();
    void voiceProfileMatchingThresholdChanged();

private:
    QString m_database;
    std::shared_ptr<const Clock> m_clock;
    std::unique_ptr<LocalStore> m_store;
    std::vector<SpeakerProfileSummary> m_profiles;
    bool m_matchingEnabled = false;
    double m_matchingThreshold = defaultMatchingThreshold;
};

} // namespace corvane
