#include "App/AppModelTest.h"

#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"
#include "CorvaneCore/VoiceProfiles/VoiceExtraction.h"

#include <QDir>
#include <QSemaphore>

#include <filesystem>

using namespace corvane;

namespace {

using Kind = VoiceProfileUpdateMessage::Kind;

const QString ada = QStringLiteral("SPEAKER_00");
const QString bob = QStringLiteral("SPEAKER_01");

class VoiceTest : public AppModelTest {
protected:
    VoiceTest() {
        fixture.processes->onCommand = [this](const QStringList& arguments, const CommandCancellation& cancelled) {
            return extract(arguments, cancelled);
        };
    }
    // A run of two speakers in a meeting of its own.
    QString makeMeeting(const char* name, int modified, const TranscriptResult& result = speechResult(4)) {
        const QString run = makeRun(name, name, name, modified);
        data.write(QString::fromUtf8(name), runFiles::result, encodeTranscriptResult(result));
        DataDirectoryBuilder::setModified(run, modified);
        return run;
    }
    // As the worker does: the vector of a label in any run.
    CommandResult extract(const QStringList& arguments, const CommandCancellation& cancelled) {
        if (isHeld) {
            hasBegun.release();
            while (!mayGoOn.tryAcquire(1, 5)) {
                if (*cancelled)
                    return {137, {}};
            }
        }
        const auto value = [&](const QString& flag) { return arguments.value(arguments.indexOf(flag) + 1); };
        const QString speaker = value(workerArguments::speaker);
        if (failure)
            return {3, *failure};
        const ExtractedSpeakerEmbedding voice{
            .speaker = speaker,
            .embedding = speaker == bob ? std::vector<double>{0, 1} : std::vector<double>{1, 0.1},
            .modelID = voiceModelID,
            .dimension = 2,
            .sampleCount = sampleCount,
            .totalSpeechSeconds = 8,
            .sourceRunID = value(workerArguments::runDir).section(QLatin1Char('/'), -1)};
        writeFileAtomically(value(workerArguments::out), encodeExtractedSpeakerEmbedding(voice));
        return {0, {}};
    }
    static SpeakerProfile make(AppModel& model, const char* name) {
        return model.createSpeakerProfile(QString::fromUtf8(name), {}).value();
    }
    static VoiceProfileUpdateMessage line(AppModel& model, const QString& speaker) {
        const auto& lines = model.speakerReview().voiceProfileUpdateMessages();
        const auto found = lines.find(speaker);
        return found == lines.end() ? VoiceProfileUpdateMessage() : found->second;
    }
    static void waitForMatching(AppModel& model) {
        QElapsedTimer watchdog;
        watchdog.start();
        while (model.speakerReview().isMatchingSpeakerProfiles() && watchdog.elapsed() < 20'000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        ASSERT_FALSE(model.speakerReview().isMatchingSpeakerProfiles());
    }
    static std::int64_t voices(AppModel& model, const SpeakerProfile& profile) {
        model.reloadSpeakerProfiles();
        for (const SpeakerProfileSummary& summary : model.voiceProfiles().speakerProfiles()) {
            if (summary.profile.id == profile.id)
                return summary.observationCount;
        }
        return -1;
    }
    [[nodiscard]] TranscriptResult onDisk(const char* run) const {
        return TranscriptResultReader().read(data.run(QString::fromUtf8(run))).value();
    }
    std::optional<QString> failure;
    std::int64_t sampleCount = 3;
    std::atomic<bool> isHeld = false;
    QSemaphore hasBegun;
    QSemaphore mayGoOn;
};

TEST_F(VoiceTest, aVoiceIsAddedOnceAndRemovedAgain) {
    makeMeeting("one", 100);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    auto added = model.addVoiceObservation(ada, profile);
    EXPECT_EQ(onDisk("one").speakerNames.at(ada), QStringLiteral("Ada")); // stands before the voice is known
    EXPECT_EQ(line(model, ada).text, QStringLiteral("Extracting voice for Ada"));
    EXPECT_EQ(status(model), QStringLiteral("Extracting voice profile for SPEAKER_00"));
    EXPECT_TRUE(model.speakerReview().isUpdatingVoiceProfile());
    EXPECT_TRUE(ModelFixture::resultOf(added));
    EXPECT_EQ(line(model, ada), (VoiceProfileUpdateMessage{Kind::success, QStringLiteral("Voice added to Ada")}));
    EXPECT_FALSE(model.speakerReview().isUpdatingVoiceProfile());
    EXPECT_EQ(voices(model, profile), 1);

    EXPECT_TRUE(ModelFixture::resultOf(model.addVoiceObservation(ada, profile)));
    EXPECT_EQ(status(model), QStringLiteral("SPEAKER_00 is already linked to Ada for this meeting"));
    EXPECT_EQ(fixture.processes->commands().size(), 1U);

    EXPECT_TRUE(model.removeSpeakerProfileAssignment(ada));
    EXPECT_EQ(line(model, ada).text, QStringLiteral("Voice removed from Ada"));
    EXPECT_TRUE(onDisk("one").speakerProfileAssignments.empty());
    EXPECT_TRUE(onDisk("one").speakerNames.empty());
    EXPECT_EQ(voices(model, profile), 0);
    model.assignSpeaker(ada, profile);
    model.removeSpeakerProfileAssignment(ada);
    EXPECT_EQ(line(model, ada).text, QStringLiteral("Profile tag removed"));
}

TEST_F(VoiceTest, whatGoesWrongIsOnTheCardAndTheNameStays) {
    makeMeeting("one", 100);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    const auto attempt = [&] {
        EXPECT_FALSE(ModelFixture::resultOf(model.addVoiceObservation(ada, profile)));
        EXPECT_EQ(line(model, ada).kind, Kind::failure);
        EXPECT_EQ(status(model), line(model, ada).text);
        EXPECT_EQ(onDisk("one").speakerProfileAssignments.at(ada).profileID, profile.id);
        EXPECT_FALSE(model.speakerReview().isUpdatingVoiceProfile());
        return line(model, ada).text.toStdString();
    };
    failure = QStringLiteral("no speech");
    EXPECT_EQ(attempt(), "Voice profile update failed: worker exited with status 3: no speech");
    failure.reset();
    sampleCount = 1LL << 40; // of a careless worker
    EXPECT_THAT(attempt(), testing::HasSubstr("speaker_profile_SPEAKER_00.json holds a count that cannot be"));
    fixture.processes->onCommand = [](auto&, auto&) { return CommandResult{0, {}}; };
    QFile::remove(data.run(QStringLiteral("one")) + QStringLiteral("/speaker_profile_SPEAKER_00.json"));
    EXPECT_THAT(attempt(), testing::HasSubstr("cannot be read"));
    fixture.processes->onCommand = {};
    EXPECT_EQ(attempt(), "Voice profile update failed: worker exited with status 2: No such file or directory");
    QFile::remove(worker);
    EXPECT_EQ(attempt(), "corvane-worker not found");
    EXPECT_EQ(voices(model, profile), 0);
}

TEST_F(VoiceTest, aVoiceThatComesLateIsStoredAndShownNowhereElse) {
    makeMeeting("one", 100);
    makeMeeting("two", 200);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    isHeld = true;
    auto added = model.addVoiceObservation(ada, profile); // in "two"
    hasBegun.acquire();
    select(model, "one");
    EXPECT_FALSE(model.speakerReview().isUpdatingVoiceProfile());
    mayGoOn.release();
    EXPECT_TRUE(ModelFixture::resultOf(added));
    EXPECT_TRUE(model.speakerReview().voiceProfileUpdateMessages().empty());
    EXPECT_EQ(status(model), QStringLiteral("Completed"));
    EXPECT_EQ(voices(model, profile), 1);
    EXPECT_TRUE(onDisk("one").speakerNames.empty());

    auto orphan = model.addVoiceObservation(bob, profile);
    hasBegun.acquire();
    model.deleteSpeakerProfile(profile);
    mayGoOn.release();
    EXPECT_FALSE(ModelFixture::resultOf(orphan));
    EXPECT_EQ(line(model, bob).text, QStringLiteral("Voice profile update failed: the profile has been deleted"));

    const SpeakerProfile other = make(model, "Bob");
    auto refused = model.addVoiceObservation(bob, other);
    hasBegun.acquire();
    {
        const SqliteConnection program(data.paths.database());
        program.execute("BEGIN EXCLUSIVE");
        mayGoOn.release();
        EXPECT_FALSE(ModelFixture::resultOf(refused));
    }
    EXPECT_EQ(line(model, bob).text, QStringLiteral("Voice profile update failed: executeFailed: database is locked"));

    static_cast<void>(model.addVoiceObservation(ada, other));
    hasBegun.acquire();
    fixture.stop(); // ends the command, and waits for nothing else
    EXPECT_EQ(voices(fixture.start(), other), 0);
}

TEST_F(VoiceTest, suggestionsComeOnceAndAreAnswered) {
    makeMeeting("one", 100);
    makeMeeting("two", 200);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    EXPECT_TRUE(ModelFixture::resultOf(model.addVoiceObservation(ada, profile))); // in "two"
    select(model, "one");
    EXPECT_FALSE(model.speakerReview().isMatchingSpeakerProfiles()); // switched off
    EXPECT_TRUE(model.updateVoiceProfileMatchingEnabled(true));
    model.refreshRun();
    EXPECT_TRUE(model.speakerReview().isMatchingSpeakerProfiles());
    waitForMatching(model);
    EXPECT_EQ(status(model), QStringLiteral("Speaker profile suggestions ready"));
    const SpeakerProfileMatches stored = onDisk("one").speakerProfileMatches;
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].speaker, ada);
    EXPECT_EQ(stored[0].profileID, profile.id);
    EXPECT_DOUBLE_EQ(stored[0].score, 1);
    EXPECT_EQ(model.detail().transcriptResult()->speakerProfileMatches, stored);
    EXPECT_EQ(fixture.processes->commands().size(), 3U);

    model.rejectSpeakerProfileMatch(stored[0]);
    EXPECT_EQ(onDisk("one").speakerProfileMatches[0].status, QStringLiteral("rejected"));
    AppModel& again = fixture.start();
    select(again, "one");
    EXPECT_FALSE(again.speakerReview().isMatchingSpeakerProfiles()); // it has been answered once
    EXPECT_EQ(fixture.processes->commands().size(), 3U);
    EXPECT_TRUE(ModelFixture::resultOf(again.acceptSpeakerProfileMatch(stored[0])));
    EXPECT_EQ(onDisk("one").speakerProfileMatches[0].status, QStringLiteral("accepted"));
    EXPECT_EQ(onDisk("one").speakerNames.at(ada), QStringLiteral("Ada"));
    EXPECT_EQ(voices(again, profile), 2);
    again.deleteSpeakerProfile(profile);
    EXPECT_FALSE(ModelFixture::resultOf(again.acceptSpeakerProfileMatch(stored[0])));
}

TEST_F(VoiceTest, matchingOfARunThatWasLeftIsDropped) {
    makeMeeting("one", 100);
    makeMeeting("two", 200);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    EXPECT_TRUE(ModelFixture::resultOf(model.addVoiceObservation(ada, profile)));
    EXPECT_TRUE(model.updateVoiceProfileMatchingEnabled(true));
    EXPECT_TRUE(model.updateVoiceProfileMatchingThreshold(1.4));
    EXPECT_EQ(model.voiceProfiles().voiceProfileMatchingThreshold(), 1);
    isHeld = true;
    select(model, "one");
    hasBegun.acquire();
    QDir(data.run(QStringLiteral("one"))).removeRecursively();
    isHeld = false; // the next command may begin at once
    select(model, "two");
    mayGoOn.release();
    waitForMatching(model);
    EXPECT_TRUE(onDisk("two").speakerProfileMatches.empty());
    EXPECT_EQ(status(model), QStringLiteral("No speaker profile suggestions")); // of "two": bob is nobody known
    EXPECT_FALSE(QDir(data.run(QStringLiteral("one"))).exists());
}

TEST_F(VoiceTest, aNewNameReachesEveryLinkedMeetingAndNoOther) {
    for (const char* run : {"one", "two", "three", "other"})
        makeMeeting(run, 100);
    makeMeeting("newest", 200);
    data.makeRun(QStringLiteral("without result"));
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    const SpeakerProfile another = make(model, "Bob");
    for (const char* run : {"one", "two", "three"}) {
        select(model, run);
        model.assignSpeaker(ada, profile);
    }
    select(model, "other");
    model.assignSpeaker(bob, another);
    model.speakerReview().setName(ada, QStringLiteral("Ada"));
    model.saveSpeakerMappings();
    data.write(QStringLiteral("two"), runFiles::result, "{\"" + uuidText(profile.id).toLatin1() + "\": damaged");
    select(model, "newest");
    const QString untouched = data.run(QStringLiteral("other")) + QStringLiteral("/transcript.srt");
    const auto before = LinuxFileTree().stamp(untouched);

    EXPECT_TRUE(ModelFixture::resultOf(model.updateSpeakerProfile(profile, QStringLiteral(" Ada "), {}, true)));
    auto renamed = model.updateSpeakerProfile(profile, QStringLiteral("Ada L."), {}, true);
    select(model, "three");                        // while it is on its way
    EXPECT_FALSE(ModelFixture::resultOf(renamed)); // not in "two", which is damaged
    EXPECT_EQ(status(model), QStringLiteral("Speaker profile updated"));
    for (const char* run : {"one", "three"}) {
        EXPECT_EQ(onDisk(run).speakerNames.at(ada), QStringLiteral("Ada L."));
        EXPECT_EQ(onDisk(run).speakerProfileAssignments.at(ada).displayName, QStringLiteral("Ada L."));
        EXPECT_TRUE(readTextFile(data.run(QString::fromUtf8(run)) + QStringLiteral("/transcript.vtt"))
                        ->contains(QStringLiteral("Ada L.")));
    }
    EXPECT_EQ(model.speakerReview().speakerMappings().at(ada), QStringLiteral("Ada L."));
    EXPECT_EQ(onDisk("other").speakerNames.at(ada), QStringLiteral("Ada")); // typed by hand
    EXPECT_EQ(LinuxFileTree().stamp(untouched), before);

    static_cast<void>(
        model.updateSpeakerProfile(*model.voiceProfiles().find(profile.id), QStringLiteral("A. L."), {}, true));
    fixture.stop(); // what was begun is finished
    EXPECT_EQ(onDisk("one").speakerNames.at(ada), QStringLiteral("A. L."));
}

TEST_F(VoiceTest, aTypedNameIsSavedAfterAWhileOrAtTheEnd) {
    makeMeeting("one", 100);
    AppModel& model = fixture.start();
    model.updateSpeakerName(ada, QStringLiteral("A"));
    model.updateSpeakerName(ada, QStringLiteral("Ad "));
    EXPECT_TRUE(onDisk("one").speakerNames.empty());
    model.refreshRun(); // the poll does not take the name away
    EXPECT_EQ(model.speakerReview().speakerMappings().at(ada), QStringLiteral("Ad "));
    QElapsedTimer watchdog;
    watchdog.start();
    while (model.speakerReview().isSaveDue() && watchdog.elapsed() < 20'000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_GE(watchdog.elapsed(), 450);
    EXPECT_EQ(onDisk("one").speakerNames.at(ada), QStringLiteral("Ad "));
    EXPECT_EQ(status(model), QStringLiteral("Speaker names saved automatically"));
    model.updateSpeakerName(bob, QStringLiteral("Bob"));
    fixture.stop();
    EXPECT_EQ(onDisk("one").speakerNames.at(bob), QStringLiteral("Bob"));
}

TEST_F(VoiceTest, aHostileLabelStaysInItsRun) {
    const QString prefix = QStringLiteral("speaker_profile_");
    EXPECT_EQ(speakerFileName(prefix, QStringLiteral("Zoë 1")), QStringLiteral("speaker_profile_Zoë 1.json"));
    EXPECT_EQ(speakerFileName(prefix, QStringLiteral("/../../x")),
              QStringLiteral("speaker_profile_%2F..%2F..%2Fx.json"));
    EXPECT_NE(speakerFileName(prefix, QStringLiteral("a/b")), speakerFileName(prefix, QStringLiteral("a%2Fb")));
    const QString longest(300, QChar(0x00EB));
    EXPECT_LE(speakerFileName(prefix, longest).toUtf8().size(), 255);
    EXPECT_NE(speakerFileName(prefix, longest), speakerFileName(prefix, longest + QLatin1Char('x')));

    const QString escaping = QStringLiteral("/../../../escaped");
    const QString cut = ada + QChar(0) + QStringLiteral("x");
    TranscriptResult result = speechResult(4);
    result.speakers = {{.speaker = escaping, .duration = 1, .examples = {}},
                       {.speaker = cut, .duration = 1, .examples = {}},
                       {.speaker = longest, .duration = 1, .examples = {}}};
    makeMeeting("one", 100, result);
    AppModel& model = fixture.start();
    const SpeakerProfile profile = make(model, "Ada");
    EXPECT_TRUE(ModelFixture::resultOf(model.addVoiceObservation(escaping, profile)));
    EXPECT_TRUE(ModelFixture::resultOf(model.addVoiceObservation(longest, profile)));
    EXPECT_FALSE(ModelFixture::resultOf(model.addVoiceObservation(cut, profile))); // not SPEAKER_00's voice
    EXPECT_THAT(status(model).toStdString(), testing::HasSubstr("the speaker's label holds a NUL character"));
    const std::filesystem::path root = QFile::encodeName(data.paths.root + QStringLiteral("/..")).toStdString();
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        EXPECT_NE(entry.path().filename(), "escaped.json") << entry.path();
    EXPECT_EQ(QDir(data.run(QStringLiteral("one"))).entryList({QStringLiteral("speaker_profile_*")}).size(), 2);
}

} // namespace
