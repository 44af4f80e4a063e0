// The voices: adding and removing vectors, and finding whose voice one is.
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/LocalStore.h"
#include "CorvaneCore/VoiceProfiles/LocalStoreRows.h"
#include "CorvaneCore/VoiceProfiles/VoiceVectors.h"

#include <algorithm>
#include <unordered_map>

namespace corvane {

void LocalStore::addSpeakerProfileObservation(const SpeakerProfileObservation& observation) {
    const double now = nowSeconds();
    m_connection.execute(R"(INSERT OR IGNORE INTO speaker_profile_embeddings (
    id,
    profile_id,
    embedding,
    model_id,
    dimension,
    sample_count,
    total_speech_seconds,
    source_run_id,
    source_meeting_id,
    source_local_speaker,
    created_at,
    last_seen_at
) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?))",
                         {uuidText(QUuid::createUuid()), uuidText(observation.profileID),
                          embeddingData(observation.embedding), observation.modelID, observation.dimension,
                          observation.sampleCount, observation.totalSpeechSeconds, observation.sourceRunID,
                          observation.sourceMeetingID, observation.sourceLocalSpeaker, now, now});
}

bool LocalStore::hasSpeakerProfileObservation(const QUuid& profileID, const QString& sourceRunID,
                                              const QString& sourceLocalSpeaker, const QString& modelID) const {
    SqliteStatement row = m_connection.prepare(R"(SELECT 1
FROM speaker_profile_embeddings
WHERE profile_id = ? AND source_run_id = ? AND source_local_speaker = ? AND model_id = ?
LIMIT 1)");
    row.bind({uuidText(profileID), sourceRunID, sourceLocalSpeaker, modelID});
    return row.nextRow();
}

bool LocalStore::deleteSpeakerProfileObservation(const QUuid& profileID, const QString& sourceRunID,
                                                 const QString& sourceLocalSpeaker, const QString& modelID) {
    m_connection.execute(R"(DELETE FROM speaker_profile_embeddings
WHERE profile_id = ?
  AND source_run_id = ?
  AND source_local_speaker = ?
  AND model_id = ?)",
                         {uuidText(profileID), sourceRunID, sourceLocalSpeaker, modelID});
    return m_connection.changes() > 0;
}

namespace {

struct KnownVoice {
    SpeakerProfile profile;
    NormalizedCentroid centroid;
};

// The enabled profiles with vectors of the model, in the order of their first row. The vectors are summed as they are
// read: a store of many people needs the memory of one vector for each.
std::vector<KnownVoice> knownVoices(const SqliteConnection& connection, const QString& modelID) {
    SqliteStatement row =
        connection.prepare(R"(SELECT p.id, p.display_name, p.notes, p.enabled, p.created_at, p.updated_at, e.embedding
FROM speaker_profile_embeddings e
INNER JOIN speaker_profiles p ON p.id = e.profile_id
WHERE p.enabled = 1 AND e.model_id = ?)");
    row.bind({modelID});
    std::vector<KnownVoice> voices;
    std::unordered_map<QByteArray, std::optional<std::size_t>> places; // of a stored id; none if it is no UUID
    while (row.nextRow()) {
        if (row.isNull(6))
            continue;
        const QByteArrayView storedID = row.textBytes(0);
        // A view as the key to look for, as most rows are of a person met before.
        auto place = places.find(QByteArray::fromRawData(storedID.data(), storedID.size()));
        if (place == places.end()) {
            const auto id = storedUuid(row.text(0));
            place = places.emplace(storedID.toByteArray(), id ? std::optional(voices.size()) : std::nullopt).first;
            if (id)
                voices.push_back({.profile = storedProfile(row, *id), .centroid = {}});
        }
        if (place->second)
            voices[*place->second].centroid.addData(row.blob(6));
    }
    return voices;
}

} // namespace

std::vector<SpeakerProfileMatchCandidate> LocalStore::bestSpeakerProfileMatches(std::span<const double> embedding,
                                                                                const QString& modelID,
                                                                                double threshold,
                                                                                std::size_t limit) const {
    std::vector<SpeakerProfileMatchCandidate> candidates;
    for (const KnownVoice& voice : knownVoices(m_connection, modelID)) {
        const double score = cosineSimilarity(embedding, voice.centroid.value());
        if (threshold <= score)
            candidates.push_back({.profile = voice.profile, .score = score});
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const auto& one, const auto& other) { return one.score > other.score; });
    candidates.resize(std::min(limit, candidates.size()));
    return candidates;
}

} // namespace corvane
