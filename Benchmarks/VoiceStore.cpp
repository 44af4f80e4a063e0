// Whose voice is it, and who is known? A store of 1,000 people with 50 vectors of 256 numbers each is asked both; the
// peer is a plain scan of the same vectors in SQLite.
#include "Benchmarks/Measuring.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/LocalStore.h"
#include "CorvaneCore/VoiceProfiles/VoiceVectors.h"

#include <QTemporaryDir>

#include <random>

using namespace corvane;

namespace {

constexpr int people = 1'000;
constexpr int vectorsEach = 50;
constexpr std::size_t dimension = 256;

std::vector<double> vectorNear(const std::vector<double>& voice, std::mt19937& random) {
    std::normal_distribution<double> noise(0, 0.3);
    std::vector<double> vector = voice;
    for (double& element : vector)
        element += noise(random);
    return vector;
}

// As the store writes them, but in one transaction. Vectors come in the order of meetings, as they do in life, or
// person by person.
std::vector<double> fill(const QString& path, bool byMeeting) {
    LocalStore store(path);
    const SqliteConnection connection(path);
    connection.execute("BEGIN");
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed): the same figures each time
    std::vector<std::vector<double>> voices;
    std::vector<QString> ids;
    for (int i = 0; i < people; ++i) {
        voices.push_back(vectorNear(std::vector<double>(dimension), random));
        ids.push_back(uuidText(QUuid::createUuid()));
        connection.execute("INSERT INTO speaker_profiles VALUES (?, ?, '', 1, 0, 0)",
                           {ids.back(), QStringLiteral("Person %1").arg(i)});
    }
    for (int i = 0; i < people * vectorsEach; ++i) {
        const auto person = static_cast<std::size_t>(byMeeting ? i % people : i / vectorsEach);
        const auto meeting = static_cast<std::int64_t>(byMeeting ? i / people : i % vectorsEach);
        connection.execute("INSERT INTO speaker_profile_embeddings VALUES (?, ?, ?, ?, ?, 3, 20.5, ?, ?, ?, 0, 0)",
                           {uuidText(QUuid::createUuid()), ids[person],
                            embeddingData(vectorNear(voices[person], random)), voiceModelID,
                            static_cast<std::int64_t>(dimension), QStringLiteral("run-%1").arg(meeting),
                            QStringLiteral("meeting-%1").arg(meeting), QStringLiteral("SPEAKER_%1").arg(person)});
    }
    connection.execute("COMMIT");
    return voices[people / 2];
}

void measure(const QString& path, bool byMeeting) {
    const std::vector<double> voice = fill(path, byMeeting);
    const SqliteConnection connection(path);
    const double plain = medianMilliseconds(11, [&] {
        SqliteStatement row = connection.prepare("SELECT embedding FROM speaker_profile_embeddings");
        qint64 bytes = 0;
        while (row.nextRow())
            bytes += row.blob(0).size();
        if (bytes != qint64{people} * vectorsEach * qint64{dimension} * 8)
            std::exit(1);
    });
    std::printf("vectors %s\n", byMeeting ? "meeting by meeting" : "person by person");
    std::unique_ptr<LocalStore> store;
    const double open = medianMilliseconds(5, [&] { store = std::make_unique<LocalStore>(path); });
    printFigure("  opening", open, 250, "plain scan of the vectors", plain);
    const double match = medianMilliseconds(11, [&] {
        const auto best = store->bestSpeakerProfileMatches(voice, voiceModelID, defaultMatchingThreshold, 1);
        if (best.size() != 1 || best[0].profile.displayName != QStringLiteral("Person %1").arg(people / 2))
            std::exit(1);
    });
    printFigure("  bestSpeakerProfileMatches", match, 60, "plain scan of the vectors", plain);
    const double list = medianMilliseconds(11, [&] {
        if (store->speakerProfiles().size() != people)
            std::exit(1);
    });
    printFigure("  speakerProfiles", list, 60, "plain scan of the vectors", plain);
}

} // namespace

int main() {
    const QTemporaryDir directory;
    measure(directory.filePath(QStringLiteral("people.sqlite")), false);
    measure(directory.filePath(QStringLiteral("meetings.sqlite")), true);
    return 0;
}
