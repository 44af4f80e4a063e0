// The people: creating, listing, changing and deleting them.
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/LocalStore.h"
#include "CorvaneCore/VoiceProfiles/LocalStoreRows.h"

#include <QDebug>

namespace corvane {

SpeakerProfile LocalStore::createSpeakerProfile(const QString& displayName, const QString& notes) {
    const double now = nowSeconds();
    SpeakerProfile profile{.id = QUuid::createUuid(),
                           .displayName = displayName.trimmed(),
                           .notes = notes.trimmed(),
                           .enabled = true,
                           .createdAt = dateFromSeconds(now),
                           .updatedAt = dateFromSeconds(now)};
    m_connection.execute("INSERT INTO speaker_profiles (id, display_name, notes, enabled, created_at, updated_at) "
                         "VALUES (?, ?, ?, ?, ?, ?)",
                         {uuidText(profile.id), profile.displayName, profile.notes, profile.enabled, now, now});
    return profile;
}

std::vector<SpeakerProfileSummary> LocalStore::speakerProfiles() const {
    SqliteStatement row = m_connection.prepare(R"(SELECT
    p.id,
    p.display_name,
    p.notes,
    p.enabled,
    p.created_at,
    p.updated_at,
    COUNT(e.id) AS observation_count,
    COUNT(DISTINCT e.source_meeting_id) AS meeting_count,
    COALESCE(SUM(e.total_speech_seconds), 0) AS total_speech_seconds,
    MAX(e.last_seen_at) AS last_seen_at,
    (
        SELECT m.score
        FROM speaker_profile_matches m
        WHERE m.profile_id = p.id
        ORDER BY m.updated_at DESC
        LIMIT 1
    ) AS latest_match_score
FROM speaker_profiles p
LEFT JOIN speaker_profile_embeddings e ON e.profile_id = p.id
GROUP BY p.id
ORDER BY p.display_name COLLATE NOCASE ASC)");
    std::vector<SpeakerProfileSummary> summaries;
    while (row.nextRow()) {
        const auto id = storedUuid(row.text(0));
        if (!id)
            qFatal("a voice profile in corvane.sqlite has an id that is no UUID: %s",
                   qUtf8Printable(QDebug::toString(row.text(0)))); // with control characters escaped
        SpeakerProfileSummary summary{.profile = storedProfile(row, *id),
                                      .observationCount = row.integer(6),
                                      .meetingCount = row.integer(7),
                                      .totalSpeechSeconds = row.real(8),
                                      .lastSeenAt = std::nullopt,
                                      .latestMatchScore = row.optionalReal(10)};
        if (const auto seen = row.optionalReal(9))
            summary.lastSeenAt = dateFromSeconds(*seen);
        summaries.push_back(std::move(summary));
    }
    return summaries;
}

bool LocalStore::hasSpeakerProfile(const QUuid& id) const {
    return m_connection.finds("SELECT 1 FROM speaker_profiles WHERE id = ?", {uuidText(id)});
}

void LocalStore::updateSpeakerProfile(const QUuid& id, const QString& displayName, const QString& notes, bool enabled) {
    m_connection.execute(
        "UPDATE speaker_profiles SET display_name = ?, notes = ?, enabled = ?, updated_at = ? WHERE id = ?",
        {displayName.trimmed(), notes.trimmed(), enabled, nowSeconds(), uuidText(id)});
}

void LocalStore::setSpeakerProfileEnabled(const QUuid& id, bool enabled) {
    m_connection.execute("UPDATE speaker_profiles SET enabled = ?, updated_at = ? WHERE id = ?",
                         {enabled, nowSeconds(), uuidText(id)});
}

void LocalStore::deleteSpeakerProfile(const QUuid& id) {
    // SQLite does not enforce the foreign keys unless it is asked to.
    for (const char* statement :
         {"DELETE FROM speaker_profile_embeddings WHERE profile_id = ?",
          "DELETE FROM speaker_profile_matches WHERE profile_id = ?", "DELETE FROM speaker_profiles WHERE id = ?"})
        m_connection.execute(statement, {uuidText(id)});
}

void LocalStore::deleteAllSpeakerProfiles() {
    for (const char* statement : {"DELETE FROM speaker_profile_embeddings", "DELETE FROM speaker_profile_matches",
                                  "DELETE FROM speaker_profiles"})
        m_connection.execute(statement);
}

} // namespace corvane
