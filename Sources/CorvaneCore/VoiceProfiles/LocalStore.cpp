// Opening, the steps that bring any database to the present form, and what the other files share.
#include "CorvaneCore/VoiceProfiles/LocalStore.h"

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/LocalStoreRows.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr const char* createProfiles = R"(CREATE TABLE IF NOT EXISTS speaker_profiles (
    id TEXT PRIMARY KEY,
    display_name TEXT NOT NULL,
    notes TEXT NOT NULL DEFAULT '',
    enabled INTEGER NOT NULL DEFAULT 1,
    created_at REAL NOT NULL,
    updated_at REAL NOT NULL
))";

constexpr const char* createEmbeddings = R"(CREATE TABLE IF NOT EXISTS speaker_profile_embeddings (
    id TEXT PRIMARY KEY,
    profile_id TEXT NOT NULL,
    embedding BLOB NOT NULL,
    model_id TEXT NOT NULL,
    dimension INTEGER NOT NULL,
    sample_count INTEGER NOT NULL,
    total_speech_seconds REAL NOT NULL,
    source_run_id TEXT,
    source_meeting_id TEXT,
    source_local_speaker TEXT,
    created_at REAL NOT NULL,
    last_seen_at REAL NOT NULL,
    FOREIGN KEY(profile_id) REFERENCES speaker_profiles(id) ON DELETE CASCADE
))";

constexpr const char* addLocalSpeaker = "ALTER TABLE speaker_profile_embeddings ADD COLUMN source_local_speaker TEXT";

constexpr const char* createMatches = R"(CREATE TABLE IF NOT EXISTS speaker_profile_matches (
    run_id TEXT NOT NULL,
    local_speaker TEXT NOT NULL,
    profile_id TEXT NOT NULL,
    score REAL NOT NULL,
    status TEXT NOT NULL,
    created_at REAL NOT NULL,
    updated_at REAL NOT NULL,
    PRIMARY KEY(run_id, local_speaker, profile_id),
    FOREIGN KEY(profile_id) REFERENCES speaker_profiles(id) ON DELETE CASCADE
))";

constexpr const char* indexEmbeddingsByProfile =
    "CREATE INDEX IF NOT EXISTS idx_speaker_profile_embeddings_profile ON speaker_profile_embeddings(profile_id)";

// Older databases had no unique index, and so may hold one voice twice; the oldest row stays.
constexpr const char* deleteDuplicates = R"(DELETE FROM speaker_profile_embeddings
WHERE source_run_id IS NOT NULL
  AND source_local_speaker IS NOT NULL
  AND rowid NOT IN (
    SELECT MIN(rowid)
    FROM speaker_profile_embeddings
    GROUP BY profile_id, model_id, source_run_id, source_local_speaker
  ))";

constexpr const char* deleteDuplicatesWithoutSpeaker = R"(DELETE FROM speaker_profile_embeddings
WHERE source_run_id IS NOT NULL
  AND source_local_speaker IS NULL
  AND rowid NOT IN (
    SELECT MIN(rowid)
    FROM speaker_profile_embeddings
    WHERE source_local_speaker IS NULL
    GROUP BY profile_id, model_id, source_run_id
  ))";

constexpr const char* indexEmbeddingsBySource =
    "CREATE UNIQUE INDEX IF NOT EXISTS idx_speaker_profile_embeddings_source ON "
    "speaker_profile_embeddings(profile_id, model_id, source_run_id, source_local_speaker)";

constexpr const char* indexMatchesByProfile =
    "CREATE INDEX IF NOT EXISTS idx_speaker_profile_matches_profile ON speaker_profile_matches(profile_id)";

constexpr const char* createSettings =
    "CREATE TABLE IF NOT EXISTS speaker_profile_settings (key TEXT PRIMARY KEY, value TEXT NOT NULL)";

} // namespace

LocalStore::LocalStore(const QString& path, std::shared_ptr<const Clock> clock)
    : m_connection(path), m_clock(std::move(clock)) {
    migrate();
}

// No version is kept, so that every step must do no harm to a database that has been through it.
void LocalStore::migrate() {
    m_connection.execute(createProfiles);
    m_connection.execute(createEmbeddings);
    try {
        m_connection.execute(addLocalSpeaker);
    } catch (const StoreError&) {
        // The column is there in all but the oldest databases.
    }
    for (const char* statement :
         {createMatches, indexEmbeddingsByProfile, deleteDuplicates, deleteDuplicatesWithoutSpeaker,
          indexEmbeddingsBySource, indexMatchesByProfile, createSettings})
        m_connection.execute(statement);
}

double LocalStore::nowSeconds() const {
    return static_cast<double>(m_clock->now().toMSecsSinceEpoch()) / 1000.0;
}

QDateTime dateFromSeconds(double seconds) {
    // The years that have four digits, which is what texts for people and for programs can hold.
    constexpr double first = -62135596800.0; // 0001-01-01
    constexpr double last = 253402300799.0;  // 9999-12-31 23:59:59
    const double within = std::isnan(seconds) ? 0.0 : std::clamp(seconds, first, last);
    return QDateTime::fromMSecsSinceEpoch(qRound64(within * 1000.0), Qt::UTC);
}

std::optional<QUuid> storedUuid(const QString& text) {
    const QUuid id = QUuid::fromString(text);
    return uuidText(id) == text.toUpper() ? std::optional(id) : std::nullopt;
}

SpeakerProfile storedProfile(const SqliteStatement& row, const QUuid& id) {
    return {.id = id,
            .displayName = row.text(1),
            .notes = row.text(2),
            .enabled = row.integer(3) != 0,
            .createdAt = dateFromSeconds(row.real(4)),
            .updatedAt = dateFromSeconds(row.real(5))};
}

} // namespace corvane
