#include "Support/PrintQt.h"
#include "Worker/WorkerSamples.h"

#include "CorvaneWorker/Diarization/VoiceClustering.h"
#include "CorvaneWorker/Diarization/VoiceFeatures.h"
#include "CorvaneWorker/Run/StageChoice.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/VoiceLab/DiarizationError.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <random>
#include <set>

using namespace corvane;
using namespace corvane::test;

namespace {

std::size_t speakerCount(const std::vector<SpeakerTurn>& turns) {
    std::set<int> speakers;
    for (const SpeakerTurn& turn : turns)
        speakers.insert(turn.speaker);
    return speakers.size();
}

// A conversation as the diarization gets it.
class Talk {
public:
    explicit Talk(const std::vector<std::int16_t>& samples) : m_store(m_directory.path()) {
        m_store.append(samples);
        FrameLevels levels;
        levels.add(samples);
        m_speech = findSpeech(levels.levels());
    }

    [[nodiscard]] std::vector<SpeakerTurn> diarize(const SpeakerLimits& limits) const {
        return chooseSeparator()->separate(m_store, m_speech, limits, [](double) {});
    }
    [[nodiscard]] const std::vector<FrameRange>& speech() const { return m_speech; }

private:
    QTemporaryDir m_directory;
    SampleStore m_store;
    std::vector<FrameRange> m_speech;
};

} // namespace

TEST(Diarization, TwoPeopleAreToldApartWithinTheLimits) {
    const Conversation conversation =
        converse({{readerSentence(u"0870"_s), readerSentence(u"0890"_s), readerSentence(u"0920"_s)},
                  {prompt(u"conf-usermenu"_s), prompt(u"demo-abouttotry"_s), prompt(u"queue-periodic-announce"_s)}});
    const Talk talk(conversation.samples);
    for (const SpeakerLimits& limits : {SpeakerLimits{2, 2}, SpeakerLimits{}}) {
        const auto turns = talk.diarize(limits);
        EXPECT_EQ(speakerCount(turns), 2U);
        const DiarizationError error = compareTurns(conversation.turns, turns);
        EXPECT_LT(error.confused / error.speech, 0.05);
        EXPECT_LT(error.rate(), 0.20);
        EXPECT_EQ(turns, talk.diarize(limits));
        // Every stretch of speech has one speaker.
        double end = 0;
        double speech = 0;
        for (const SpeakerTurn& turn : turns) {
            EXPECT_GE(turn.start, std::exchange(end, turn.end));
            speech -= turn.end - turn.start;
        }
        for (const FrameRange& range : talk.speech())
            speech += static_cast<double>(range.length()) / framesPerSecond;
        EXPECT_NEAR(speech, 0, 1e-6);
    }
    EXPECT_EQ(speakerCount(talk.diarize({1, 1})), 1U);
    EXPECT_EQ(speakerCount(talk.diarize({3, 3})), 3U);
    EXPECT_THAT(speakerCount(talk.diarize({4, 6})), testing::AllOf(testing::Ge(4U), testing::Le(6U)));
    const auto begin = conversation.samples.begin();
    const Talk second(std::vector(begin + sampleRate * 2, begin + sampleRate * 3));
    EXPECT_EQ(speakerCount(second.diarize({20, 20})), second.speech().empty() ? 0U : 1U);
}

TEST(Clustering, FindsGroupsThatAreThere) {
    std::mt19937 random(3);
    std::normal_distribution<float> noise(0.0F, 0.15F);
    for (const int groups : {2, 3, 5}) {
        WindowMatrix vectors(groups * 40, 16);
        for (Eigen::Index row = 0; row < vectors.rows(); ++row) {
            for (Eigen::Index column = 0; column < vectors.cols(); ++column)
                vectors(row, column) = noise(random) + (column == row % groups ? 1.0F : 0.0F);
            vectors.row(row).normalize();
        }
        const auto levels = clusterByWard(vectors, 6);
        ASSERT_EQ(levels.size(), 6U);
        const auto& found = levels[static_cast<std::size_t>(groups - 1)];
        for (std::size_t row = static_cast<std::size_t>(groups); row < found.size(); ++row)
            EXPECT_EQ(found[row], found[row - static_cast<std::size_t>(groups)]);
        const auto directions = refinedDirections(vectors, groupMeans(vectors, found, groups));
        EXPECT_EQ(nearestDirections(vectors, directions), found);
    }
}

TEST(Clustering, WhoGoesOnTalkingIsASpeakerOfHisOwn) {
    std::vector<FrameRange> windows;
    std::vector<int> turns;
    std::vector<int> alternating;
    for (int index = 0; index < 40; ++index) {
        windows.push_back({index * 150, index * 150 + 150});
        turns.push_back(index / 10 % 2);
        alternating.push_back(index % 2);
    }
    EXPECT_GT(groupPersistence(windows, turns, 2), 0.6);
    EXPECT_LT(groupPersistence(windows, alternating, 2), 0.0);
    EXPECT_EQ(groupPersistence(windows, std::vector<int>(40, 0), 1), 0.0);
    // Two windows that happen to be alike are no speaker.
    auto scrap = turns;
    scrap[5] = scrap[6] = 2;
    EXPECT_LT(groupPersistence(windows, scrap, 3), 0.6);
}

TEST(VoiceFeatures, PitchIsThatOfTheSound) {
    VoiceFeatures features;
    for (const double hertz : {90.0, 140.0, 220.0, 330.0}) {
        std::vector<std::int16_t> buzz(sampleRate / 2);
        for (std::size_t index = 0; index < buzz.size(); ++index) {
            double sample = 0;
            for (int harmonic = 1; harmonic <= 8; ++harmonic)
                sample +=
                    std::sin(2.0 * std::numbers::pi * hertz * harmonic * static_cast<double>(index) / sampleRate) /
                    harmonic;
            buzz[index] = static_cast<std::int16_t>(4000.0 * sample);
        }
        const VoiceFrames frames = features.compute(buzz);
        ASSERT_EQ(frames.logPitch.size(), 50);
        EXPECT_NEAR(std::exp(frames.logPitch[25]), hertz, hertz * 0.03);
    }
}
