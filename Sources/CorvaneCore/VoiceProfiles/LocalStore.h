// The voice profiles: named people, the voice vectors observed for them, and two settings of the matching, in one
// SQLite file (docs/formats/corvane-sqlite.md). A plain synchronous library that knows runs and meetings only as texts
// beside a vector. Owned by the model; main thread. Every operation throws StoreError with SQLite's message; a read
// that breaks off half way gives the rows so far. Nothing is held in memory between two calls.
#pragma once

#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"
#include "CorvaneCore/VoiceProfiles/SqliteConnection.h"

#include <memory>
#include <span>

namespace corvane {

inline constexpr double defaultMatchingThreshold = 0.82;

class LocalStore {
public:
    // Opens or creates the file and brings it to the present form, which is repeatable. A file that is no database, or
    // a damaged one, is left as it is.
    explicit LocalStore(const QString& path, std::shared_ptr<const Clock> clock = std::make_shared<SystemClock>());

    // Profiles (LocalStoreProfiles.cpp). Names and notes are trimmed; an empty name is the caller's matter.
    SpeakerProfile createSpeakerProfile(const QString& displayName, const QString& notes);
    // By name, letter case apart. A stored id that is no UUID ends the program.
    [[nodiscard]] std::vector<SpeakerProfileSummary> speakerProfiles() const;
    // Unlike the list, which ends early, throws where another program's lock or a damage keeps the answer back.
    [[nodiscard]] bool hasSpeakerProfile(const QUuid& id) const;
    void updateSpeakerProfile(const QUuid& id, const QString& displayName, const QString& notes, bool enabled);
    void setSpeakerProfileEnabled(const QUuid& id, bool enabled);
    // With its observations. A failure midway leaves the earlier deletes done.
    void deleteSpeakerProfile(const QUuid& id);
    void deleteAllSpeakerProfiles();

    // Observations (LocalStoreObservations.cpp)
    // A second one of the same profile, model, run and speaker is ignored: the first vector stays. One without a run or
    // without a speaker is always added.
    void addSpeakerProfileObservation(const SpeakerProfileObservation& observation);
    [[nodiscard]] bool hasSpeakerProfileObservation(const QUuid& profileID, const QString& sourceRunID,
                                                    const QString& sourceLocalSpeaker, const QString& modelID) const;
    // Whether there was one.
    bool deleteSpeakerProfileObservation(const QUuid& profileID, const QString& sourceRunID,
                                         const QString& sourceLocalSpeaker, const QString& modelID);
    // At most `limit` enabled profiles whose normalized centroid of the model's vectors has a cosine similarity of at
    // least `threshold` with `embedding`, best first.
    [[nodiscard]] std::vector<SpeakerProfileMatchCandidate> bestSpeakerProfileMatches(std::span<const double> embedding,
                                                                                      const QString& modelID,
                                                                                      double threshold,
                                                                                      std::size_t limit) const;

    // Settings (LocalStoreSettings.cpp). Matching is off until it is switched on.
    [[nodiscard]] bool speakerProfileMatchingEnabled() const;
    void setSpeakerProfileMatchingEnabled(bool enabled);
    // The default where nothing that reads as a number is stored. What is set is not clamped.
    [[nodiscard]] double speakerProfileMatchingThreshold() const;
    void setSpeakerProfileMatchingThreshold(double threshold);

private:
    void migrate();
    [[nodiscard]] std::optional<QString> setting(const char* key) const;
    void setSetting(const char* key, const QString& value);
    [[nodiscard]] double nowSeconds() const;

    SqliteConnection m_connection;
    std::shared_ptr<const Clock> m_clock;
};

} // namespace corvane
