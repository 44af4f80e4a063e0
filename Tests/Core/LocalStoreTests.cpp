#include "Support/Fakes/FakeClock.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/LocalStore.h"
#include "CorvaneCore/VoiceProfiles/VoiceVectors.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace corvane;

namespace {

const QString model = QStringLiteral("corvane-acoustic-v1");

class LocalStoreTest : public testing::Test {
protected:
    std::unique_ptr<LocalStore> open() const { return std::make_unique<LocalStore>(m_path, m_clock); }
    [[nodiscard]] SqliteConnection raw() const { return SqliteConnection(m_path); }
    [[nodiscard]] std::int64_t count(const char* query) const {
        const SqliteConnection connection(m_path);
        SqliteStatement row = connection.prepare(query);
        return row.nextRow() ? row.integer(0) : -1;
    }
    static SpeakerProfileObservation observation(const SpeakerProfile& profile, std::vector<double> vector,
                                                 const QString& run, const QString& speaker = QStringLiteral("A")) {
        return {.profileID = profile.id,
                .embedding = std::move(vector),
                .modelID = model,
                .dimension = 2,
                .sampleCount = 3,
                .totalSpeechSeconds = 10.5,
                .sourceRunID = run,
                .sourceMeetingID = QStringLiteral("m"),
                .sourceLocalSpeaker = speaker};
    }

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath(QStringLiteral("corvane.sqlite"));
    std::shared_ptr<FakeClock> m_clock = std::make_shared<FakeClock>();
};

TEST_F(LocalStoreTest, repairsADatabaseOfAnOlderForm) {
    {
        const SqliteConnection old = raw();
        // No column for the speaker, no indexes, no other tables; the same voice may be in it twice.
        old.execute("CREATE TABLE speaker_profile_embeddings (id TEXT PRIMARY KEY, profile_id TEXT NOT NULL, "
                    "embedding BLOB NOT NULL, model_id TEXT NOT NULL, dimension INTEGER NOT NULL, sample_count INTEGER "
                    "NOT NULL, total_speech_seconds REAL NOT NULL, source_run_id TEXT, source_meeting_id TEXT, "
                    "created_at REAL NOT NULL, last_seen_at REAL NOT NULL)");
        for (const char* row : {"('first', 'p', x'', 'm', 1, 1, 1, 'r', NULL, 0, 0)",
                                "('second', 'p', x'', 'm', 1, 1, 1, 'r', NULL, 0, 0)",
                                "('free 1', 'p', x'', 'm', 1, 1, 1, NULL, NULL, 0, 0)",
                                "('free 2', 'p', x'', 'm', 1, 1, 1, NULL, NULL, 0, 0)"})
            old.execute((QByteArray("INSERT INTO speaker_profile_embeddings VALUES ") + row).constData());
    }
    EXPECT_EQ(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    open();
    {
        const SqliteConnection between = raw();
        between.execute("DROP INDEX idx_speaker_profile_embeddings_source");
        for (const char* row : {"('third', 'p', x'', 'm', 1, 1, 1, 'r', NULL, 0, 0, 'A')",
                                "('fourth', 'p', x'', 'm', 1, 1, 1, 'r', NULL, 0, 0, 'A')"})
            between.execute((QByteArray("INSERT INTO speaker_profile_embeddings VALUES ") + row).constData());
    }
    open();
    open();
    EXPECT_EQ(count("SELECT COUNT(*) FROM speaker_profile_embeddings"), 4);
    EXPECT_EQ(
        count("SELECT COUNT(*) FROM speaker_profile_embeddings WHERE id IN ('first', 'free 1', 'free 2', 'third')"), 4);
    EXPECT_EQ(count("SELECT COUNT(*) FROM sqlite_master WHERE name = 'idx_speaker_profile_embeddings_source'"), 1);
}

TEST_F(LocalStoreTest, leavesADamagedFileAsItIs) {
    open()->createSpeakerProfile(QStringLiteral("Ada"), {});
    const QByteArray whole = readFile(m_path).value();
    for (const QByteArray& damaged : {QByteArray("not a database at all, but long enough to be one").repeated(100),
                                      whole.first(whole.size() / 2), QByteArray("SQLite format 3\0", 16)}) {
        writeFileAtomically(m_path, damaged);
        try {
            open();
            ADD_FAILURE() << "opened " << damaged.size() << " bytes";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.kind(), StoreError::Kind::prepareFailed);
            EXPECT_THAT(error.text().toStdString(),
                        testing::AnyOf(testing::HasSubstr("not a database"), testing::HasSubstr("malformed")));
        }
        EXPECT_EQ(readFile(m_path), damaged);
    }
    try {
        LocalStore(m_directory.filePath(QStringLiteral("no/such/place")));
        ADD_FAILURE();
    } catch (const StoreError& error) {
        EXPECT_EQ(error.kind(), StoreError::Kind::openFailed);
    }
}

TEST_F(LocalStoreTest, refusesAtOnceWhileAnotherProgramWrites) {
    const auto store = open();
    const SpeakerProfile ada = store->createSpeakerProfile(QStringLiteral("Ada"), {});
    const SqliteConnection other = raw();
    other.execute("BEGIN EXCLUSIVE");
    other.execute("UPDATE speaker_profiles SET notes = 'theirs'");
    EXPECT_THROW(open(), StoreError);
    EXPECT_THROW(store->createSpeakerProfile(QStringLiteral("Bob"), {}), StoreError);
    EXPECT_THROW(store->updateSpeakerProfile(ada.id, QStringLiteral("Eve"), {}, true), StoreError);
    other.execute("COMMIT");
    store->createSpeakerProfile(QStringLiteral("Bob"), {});
    const auto profiles = store->speakerProfiles();
    ASSERT_EQ(profiles.size(), 2U);
    EXPECT_EQ(profiles[0].profile.displayName, QStringLiteral("Ada"));
    EXPECT_EQ(profiles[0].profile.notes, QStringLiteral("theirs"));
}

TEST_F(LocalStoreTest, listsPeopleWithWhatIsKnownOfThem) {
    const auto store = open();
    const SpeakerProfile zoe = store->createSpeakerProfile(QStringLiteral("  zoë\n"), QStringLiteral(" notes "));
    const SpeakerProfile ada = store->createSpeakerProfile(QStringLiteral("Ada"), {});
    const SpeakerProfile bob = store->createSpeakerProfile(QStringLiteral("bob"), {});
    store->addSpeakerProfileObservation(observation(zoe, {1, 0}, QStringLiteral("r1")));
    store->addSpeakerProfileObservation(observation(zoe, {0, 1}, QStringLiteral("r1"))); // the first vector stays
    auto nameless = observation(zoe, {1, 0}, QStringLiteral("r2"));
    nameless.sourceMeetingID.reset();
    nameless.sourceRunID.reset();
    m_clock->advance(2.25);
    store->addSpeakerProfileObservation(nameless);
    store->addSpeakerProfileObservation(nameless); // without a run nothing tells it from the one before

    const auto profiles = store->speakerProfiles();
    ASSERT_EQ(profiles.size(), 3U);
    EXPECT_EQ(profiles[0].profile, ada);
    EXPECT_EQ(profiles[0].observationCount, 0);
    EXPECT_FALSE(profiles[0].lastSeenAt);
    EXPECT_FALSE(profiles[0].latestMatchScore);
    EXPECT_EQ(profiles[1].profile, bob);
    EXPECT_EQ(profiles[2].profile, zoe);
    EXPECT_EQ(profiles[2].profile.displayName, QStringLiteral("zoë"));
    EXPECT_EQ(profiles[2].profile.notes, QStringLiteral("notes"));
    EXPECT_EQ(profiles[2].observationCount, 3);
    EXPECT_EQ(profiles[2].meetingCount, 1);
    EXPECT_EQ(profiles[2].totalSpeechSeconds, 31.5);
    EXPECT_EQ(profiles[2].lastSeenAt, m_clock->now());

    EXPECT_TRUE(store->hasSpeakerProfileObservation(zoe.id, QStringLiteral("r1"), QStringLiteral("A"), model));
    EXPECT_TRUE(store->deleteSpeakerProfileObservation(zoe.id, QStringLiteral("r1"), QStringLiteral("A"), model));
    EXPECT_FALSE(store->deleteSpeakerProfileObservation(zoe.id, QStringLiteral("r1"), QStringLiteral("A"), model));
    EXPECT_FALSE(store->hasSpeakerProfileObservation(zoe.id, QStringLiteral("r1"), QStringLiteral("A"), model));

    store->updateSpeakerProfile(bob.id, QStringLiteral(" Aaron "), QStringLiteral("x"), false);
    EXPECT_EQ(store->speakerProfiles()[0].profile.displayName, QStringLiteral("Aaron"));
    EXPECT_FALSE(store->speakerProfiles()[0].profile.enabled);
    store->setSpeakerProfileMatchingThreshold(0.5);
    store->deleteSpeakerProfile(zoe.id);
    EXPECT_EQ(count("SELECT COUNT(*) FROM speaker_profile_embeddings"), 0);
    EXPECT_EQ(store->speakerProfiles().size(), 2U);
    store->deleteAllSpeakerProfiles();
    EXPECT_TRUE(store->speakerProfiles().empty());
    EXPECT_EQ(store->speakerProfileMatchingThreshold(), 0.5);
}

TEST_F(LocalStoreTest, matchesTheCentroidsOfEnabledPeople) {
    const auto store = open();
    const SpeakerProfile ada = store->createSpeakerProfile(QStringLiteral("Ada"), {});
    const SpeakerProfile bob = store->createSpeakerProfile(QStringLiteral("Bob"), {});
    const SpeakerProfile cleo = store->createSpeakerProfile(QStringLiteral("Cleo"), {});
    store->addSpeakerProfileObservation(observation(ada, {3, 0}, QStringLiteral("r1")));
    store->addSpeakerProfileObservation(observation(ada, {0, 1}, QStringLiteral("r2")));
    store->addSpeakerProfileObservation(observation(ada, {9, 9, 9}, QStringLiteral("r3"))); // of another length
    store->addSpeakerProfileObservation(observation(bob, {1, 0}, QStringLiteral("r1")));
    auto other = observation(cleo, {1, 0}, QStringLiteral("r1"));
    other.modelID = QStringLiteral("another");
    store->addSpeakerProfileObservation(other);

    const double adasScore = 3 / std::sqrt(10.0); // of the mean (1.5, 0.5) with (1, 0)
    const std::vector<double> query{2, 0};
    auto best = store->bestSpeakerProfileMatches(query, model, adasScore - 1e-12, 5);
    ASSERT_EQ(best.size(), 2U);
    EXPECT_EQ(best[0].profile, bob);
    EXPECT_EQ(best[0].score, 1.0);
    EXPECT_EQ(best[1].profile, ada);
    EXPECT_NEAR(best[1].score, adasScore, 1e-12);
    EXPECT_EQ(store->bestSpeakerProfileMatches(query, model, best[1].score, 5).size(), 2U); // equal is enough
    EXPECT_EQ(store->bestSpeakerProfileMatches(query, model, adasScore + 1e-9, 5).size(), 1U);
    EXPECT_EQ(store->bestSpeakerProfileMatches(query, model, -1, 1).size(), 1U);
    const std::vector<double> longer{1, 0, 0};
    EXPECT_TRUE(store->bestSpeakerProfileMatches(longer, model, 0.01, 5).empty());
    EXPECT_EQ(store->bestSpeakerProfileMatches(longer, model, 0, 5).size(), 2U); // each with a score of 0

    store->setSpeakerProfileEnabled(bob.id, false);
    EXPECT_EQ(store->bestSpeakerProfileMatches(query, model, 0.5, 5).size(), 1U);
    // Another program's rows: an id that is none, and 20 bytes, of which 16 are two numbers.
    raw().execute("INSERT INTO speaker_profiles VALUES ('nobody', 'Nobody', '', 1, 0, 0)");
    raw().execute("INSERT INTO speaker_profile_embeddings VALUES ('x', 'nobody', zeroblob(16), ?, 2, 1, 1, NULL, NULL, "
                  "NULL, 0, 0)",
                  {model});
    raw().execute("UPDATE speaker_profile_embeddings SET embedding = ? WHERE profile_id = ?",
                  {embeddingData(std::vector<double>{2, 0}) + "tail", uuidText(ada.id)});
    best = store->bestSpeakerProfileMatches(query, model, 0.999, 5);
    ASSERT_EQ(best.size(), 1U);
    EXPECT_EQ(best[0].profile, ada);
}

TEST_F(LocalStoreTest, readsItsSettingsStrictly) {
    const auto store = open();
    EXPECT_FALSE(store->speakerProfileMatchingEnabled());
    EXPECT_EQ(store->speakerProfileMatchingThreshold(), 0.82);
    store->setSpeakerProfileMatchingEnabled(true);
    store->setSpeakerProfileMatchingThreshold(0.1 + 0.2);
    EXPECT_TRUE(open()->speakerProfileMatchingEnabled());
    EXPECT_EQ(open()->speakerProfileMatchingThreshold(), 0.1 + 0.2);

    for (const auto& [text, threshold] : std::initializer_list<std::pair<const char*, double>>{{"1", 1},
                                                                                               {"0.5", 0.5},
                                                                                               {"5e-1", 0.5},
                                                                                               {"0.5x", 0.82},
                                                                                               {" 0.5", 0.82},
                                                                                               {"0.5 ", 0.82},
                                                                                               {"", 0.82},
                                                                                               {"0,5", 0.82},
                                                                                               {"nan", 0.82}}) {
        raw().execute("UPDATE speaker_profile_settings SET value = ?", {QString::fromLatin1(text)});
        EXPECT_EQ(store->speakerProfileMatchingThreshold(), threshold) << text;
        EXPECT_EQ(store->speakerProfileMatchingEnabled(), QByteArray(text) == "1") << text;
    }
}

TEST(VoiceVectorsTest, countsOnlyWhatCanBeCompared) {
    NormalizedCentroid nothing;
    EXPECT_TRUE(nothing.value().empty());
    nothing.add({}); // an empty first vector sets the dimension to none
    nothing.add(std::vector<double>{1, 2});
    EXPECT_TRUE(nothing.value().empty());
    NormalizedCentroid silent;
    silent.add(std::vector<double>{1, 0});
    silent.addData(embeddingData(std::vector<double>{-1, 0}));
    EXPECT_EQ(silent.value(), (std::vector<double>{0, 0}));

    const std::vector<double> a{3, 4};
    const std::vector<double> zero{0, 0};
    EXPECT_EQ(cosineSimilarity(a, zero), 0);
    EXPECT_EQ(cosineSimilarity({}, {}), 0);
    EXPECT_DOUBLE_EQ(cosineSimilarity(a, std::vector<double>{-6, -8}), -1);
    EXPECT_EQ(vectorFromData(embeddingData(a)), a);
    EXPECT_EQ(embeddingData(std::vector<double>{1}), QByteArray("\0\0\0\0\0\0\xf0\x3f", 8));
}

} // namespace
