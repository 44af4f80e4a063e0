#include "Support/PrintQt.h"
#include "Worker/WorkerSamples.h"

#include "CorvaneWorker/Diarization/SpeakerSearch.h"
#include "CorvaneWorker/Diarization/TurnLabels.h"
#include "CorvaneWorker/Diarization/VoiceSequence.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Voice/SpeechTimeline.h"
#include "CorvaneWorker/Voice/VoiceModel.h"
#include "CorvaneWorker/Voice/VoiceTable.h"

#include <QFile>

#include <gtest/gtest.h>

#include <Eigen/QR>
#include <cmath>
#include <numbers>
#include <random>

using namespace corvane;
using namespace corvane::test;

namespace {

// One affine layer over 23 numbers, as Kaldi writes it.
QByteArray networkFile() {
    const auto number = [](auto value) {
        return QByteArray(1, static_cast<char>(sizeof(value))) +
               QByteArray(reinterpret_cast<const char*>(&value), sizeof(value));
    };
    QByteArray bytes("\0B<Nnet3> \n", 11);
    bytes += "input-node name=input dim=23\n"
             "component-node name=a component=a input=Append(Offset(input, -2), input)\n\n";
    bytes += "<NumComponents> " + number(1) + "<ComponentName> a <AffineComponent> <Rate> " + number(0.5F) +
             "<LinearParams> FM " + number(2) + number(3);
    for (const float value : {1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F})
        bytes += QByteArray(reinterpret_cast<const char*>(&value), sizeof(value));
    bytes += "<BiasParams> FV " + number(0) + "<Count> " + number(2.5) + "<Test> F</AffineComponent> </Nnet3> ";
    return bytes;
}

std::vector<std::int16_t> tone(double hertz, double seconds, double amplitude) {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t index = 0; index < samples.size(); ++index)
        samples[index] = static_cast<std::int16_t>(std::lround(
            amplitude * std::sin(2.0 * std::numbers::pi * hertz * static_cast<double>(index) / sampleRate)));
    return samples;
}

Eigen::MatrixXf randomMatrix(std::mt19937& random, Eigen::Index rows, Eigen::Index columns) {
    std::normal_distribution<float> normal;
    return Eigen::MatrixXf::NullaryExpr(rows, columns, [&] { return normal(random); });
}

KaldiComponent affine(std::mt19937& random, Eigen::Index inputs, Eigen::Index outputs) {
    return {
        "NaturalGradientAffineComponent",
        {},
        {{"LinearParams", randomMatrix(random, outputs, inputs)}, {"BiasParams", randomMatrix(random, outputs, 1)}}};
}

// What the installed network says of a recording.
class Measured {
public:
    explicit Measured(const std::vector<std::int16_t>& sound) : m_store(m_directory.path()) {
        m_store.append(sound);
        FrameLevels levels;
        levels.add(sound);
        m_speech = findSpeech(levels.levels());
        m_windows = placeWindows(m_speech);
    }

    [[nodiscard]] FrameMatrix of(std::span<const FrameRange> windows) const {
        return installedVoiceModel().model->measure(m_store, m_speech, windows, [](double) {});
    }
    [[nodiscard]] Eigen::RowVectorXd voice() const { return networkVoiceVector(of(m_windows).colwise().mean()); }
    [[nodiscard]] const std::vector<FrameRange>& windows() const { return m_windows; }

private:
    QTemporaryDir m_directory;
    SampleStore m_store;
    std::vector<FrameRange> m_speech;
    std::vector<FrameRange> m_windows;
};

std::vector<std::int16_t> joined(const QStringList& files) {
    std::vector<std::int16_t> sound(sampleRate / 2, 0);
    for (const QString& file : files) {
        const auto part = samplesOf(file);
        sound.insert(sound.end(), part.begin(), part.end());
        sound.insert(sound.end(), sampleRate / 2, 0);
    }
    return sound;
}

} // namespace

TEST(KaldiFiles, ANetworkIsReadAndADamagedOneIsRefused) {
    const QByteArray bytes = networkFile();
    const KaldiNetwork network = parseKaldiNetwork(bytes);
    ASSERT_EQ(network.nodes.size(), 2U);
    EXPECT_EQ(network.nodes[1].component, "a");
    EXPECT_EQ(network.nodes[1].input, "Append(Offset(input, -2), input)");
    const KaldiComponent& component = network.components.at("a");
    EXPECT_EQ(component.numbers.at("Rate"), 0.5F);
    EXPECT_EQ(component.matrices.at("LinearParams")(1, 0), 4.0F);
    EXPECT_EQ(component.matrices.at("BiasParams").size(), 0);
    // Nothing but the end marks may be missing.
    for (qsizetype length = 0; length < bytes.size() - 10; ++length)
        EXPECT_THROW((void)parseKaldiNetwork(bytes.left(length)), ModelError) << length;
    QByteArray huge = bytes;
    huge[bytes.indexOf("FM ") + 7] = '\x7f';
    EXPECT_THROW((void)parseKaldiNetwork(huge), ModelError);
    EXPECT_THROW(VoiceNetwork{network}, ModelError);
    EXPECT_EQ(parseKaldiVector(" [ 1.5 -2 ]\n"), Eigen::Vector2f(1.5F, -2.0F));
    for (const char* text : {"", "[ 1 2", "[ 1 x ]", "1 2 3"})
        EXPECT_THROW((void)parseKaldiVector(text), ModelError) << text;
}

TEST(TelephoneFeatures, TheUpperBandDoesNotFoldIntoTheLower) {
    const auto level = [](double hertz) {
        return halveRate(tone(hertz, 0.2, 10000), halvingFilter()).norm() / std::sqrt(1600.0F / 2.0F);
    };
    for (const double kept : {100.0, 1000.0, 3600.0})
        EXPECT_NEAR(level(kept), 10000, 450) << kept;
    for (const double folded : {4400.0, 6000.0, 7900.0})
        EXPECT_LT(level(folded), 10) << folded;
}

TEST(TelephoneFeatures, LoudnessIsInTheFirstNumberAlone) {
    const TelephoneFeatures features;
    std::mt19937 random(2);
    std::uniform_int_distribution<int> level(-8000, 8000);
    std::vector<std::int16_t> samples(30 * frameSamples + 2 * TelephoneFeatures::marginSamples);
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(level(random));
    const auto quiet = features.compute(samples);
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(2 * sample);
    const auto loud = features.compute(samples);
    ASSERT_EQ(quiet.rows(), 30);
    EXPECT_LT((loud.col(0) - quiet.col(0)).array().abs().maxCoeff() - std::log(4.0F), 1e-3F);
    EXPECT_LT((loud - quiet).rightCols(telephoneCepstra - 1).cwiseAbs().maxCoeff(), 1e-2F);
    const auto tones = features.compute(tone(700, 0.34, 4000));
    EXPECT_NEAR(tones(10, 0), std::log(200 * 4000.0 * 4000.0 / 2), 0.05);
}

TEST(VoiceNetwork, LayersAreWhatTheirFormulasSay) {
    std::mt19937 random(5);
    KaldiNetwork network;
    network.nodes = {{"a", "a", "Append(Offset(input, -1), input, Offset(input, 1))"},
                     {"n", "n", "a"},
                     {"pool", "pool", "n"},
                     {"b", "b", "Round(pool, 1)"}};
    network.components["a"] = affine(random, 3 * telephoneCepstra, 4);
    const Eigen::MatrixXf variance = randomMatrix(random, 4, 1).cwiseAbs2();
    network.components["n"] = {"BatchNormComponent",
                               {{"Epsilon", 0.001F}, {"TargetRms", 1.0F}},
                               {{"StatsMean", randomMatrix(random, 4, 1)}, {"StatsVar", variance}}};
    network.components["pool"] = {"StatisticsPoolingComponent", {}, {}};
    network.components["b"] = affine(random, 8, 3);
    const VoiceNetwork voice(network);
    ASSERT_EQ(voice.reach(), 1);
    const FrameMatrix features = randomMatrix(random, 9, telephoneCepstra);

    FrameMatrix normal(7, 4);
    for (Eigen::Index row = 0; row < 7; ++row) {
        const auto& a = network.components["a"].matrices;
        const auto& n = network.components["n"].matrices;
        Eigen::VectorXf input(3 * telephoneCepstra);
        input << features.row(row).transpose(), features.row(row + 1).transpose(), features.row(row + 2).transpose();
        const Eigen::VectorXf rectified = (a.at("LinearParams") * input + a.at("BiasParams")).cwiseMax(0.0F);
        normal.row(row) = ((rectified - n.at("StatsMean")).array() / (variance.array() + 0.001F).sqrt()).matrix();
    }
    const auto deviation = [](const FrameMatrix& values) -> Eigen::RowVectorXf {
        return (values.rowwise() - values.colwise().mean()).cwiseAbs2().colwise().mean().cwiseSqrt();
    };
    Eigen::VectorXf pooled(8);
    pooled << normal.colwise().mean().transpose(), deviation(normal).transpose();
    const auto& b = network.components["b"].matrices;
    const Eigen::VectorXf wanted = b.at("LinearParams") * pooled + b.at("BiasParams");
    const FrameMatrix outputs = voice.frameOutputs(features);
    const FrameMatrix vectors = voice.vectors(outputs.colwise().mean(), deviation(outputs));
    EXPECT_LT((vectors.row(0) - wanted.transpose()).norm(), 1e-3F * wanted.norm());
}

TEST(SpeechTimeline, LeadsThereAndBack) {
    const std::vector<FrameRange> speech{{10, 20}, {30, 35}, {50, 60}};
    const SpeechTimeline timeline(speech);
    EXPECT_EQ(timeline.length(), 25);
    EXPECT_EQ(timeline.before(5), 0);
    EXPECT_EQ(timeline.before(25), 10);
    EXPECT_EQ(timeline.before(32), 12);
    EXPECT_EQ(timeline.before(99), 25);
    EXPECT_EQ(timeline.inRecording({0, 25}), speech);
    EXPECT_EQ(timeline.inRecording({9, 16}), (std::vector<FrameRange>{{19, 20}, {30, 35}, {50, 51}}));
}

TEST(VoiceSequence, TheRightNumberOfSpeakersExplainsBest) {
    std::mt19937 random(11);
    const Eigen::RowVectorXf ratios = Eigen::RowVectorXf::Constant(10, 2.0F);
    for (const int speakers : {1, 3}) {
        const Eigen::MatrixXf centres = randomMatrix(random, speakers, 10) * std::sqrt(2.0F);
        WindowMatrix windows = randomMatrix(random, 300, 10);
        std::vector<int> truth;
        for (Eigen::Index row = 0; row < 300; ++row) {
            truth.push_back(static_cast<int>(row / 20) % speakers);
            windows.row(row) += centres.row(truth.back());
        }
        const VoiceSequence sequence(windows, ratios);
        double best = -1e300;
        int bestCount = 0;
        for (int count = 1; count <= 5; ++count) {
            // Starts from the truth with further speakers cut out of the first.
            std::vector<int> groups = truth;
            for (std::size_t row = 0; row < groups.size(); ++row)
                groups[row] = groups[row] == 0 && count > speakers
                                  ? (static_cast<int>(row) % (count - speakers + 1) == 0
                                         ? 0
                                         : speakers + static_cast<int>(row) % (count - speakers))
                                  : std::min(groups[row], count - 1);
            const SequenceFit fit = fitSequence(sequence, sharesOf(groups, count));
            EXPECT_NEAR(fit.shares.rowwise().sum().minCoeff(), 1.0, 1e-6);
            if (fit.score > best) {
                best = fit.score;
                bestCount = count;
            }
        }
        EXPECT_EQ(bestCount, speakers);
    }
}

TEST(SpeakerSearch, AVoiceOfTwoMoodsIsOneHoweverLongItSpeaks) {
    std::mt19937 random(5);
    const VoiceTable& table = voiceTable();
    // Back from the directions, in which a voice has the variance one.
    const Eigen::MatrixXf back = table.directions.completeOrthogonalDecomposition().pseudoInverse();
    const auto people = [&](float difference) {
        WindowMatrix windows = randomMatrix(random, 6000, voiceDirections);
        Eigen::RowVectorXf first = table.ratios.cwiseSqrt();
        for (Eigen::Index row = 0; row < windows.rows(); ++row) {
            windows.row(row) += first;
            windows(row, row / 40 % 2) += difference;
        }
        return WindowMatrix((windows * back).rowwise() + table.mean);
    };
    const auto countOf = [](const Eigen::MatrixXf& shares) { return likeliestSpeakers(shares.cast<double>()).size(); };
    EXPECT_EQ(countOf(searchSpeakers(people(0.8F), {})), 1);
    EXPECT_EQ(countOf(searchSpeakers(people(8.0F), {})), 2);
    EXPECT_EQ(countOf(searchSpeakers(people(0.8F), {2, 2})), 2);
}

TEST(TurnLabels, ABorderMovesIntoThePause) {
    auto sound = tone(300, 4.0, 8000);
    std::fill(sound.begin() + 2 * sampleRate, sound.begin() + 2 * sampleRate + sampleRate / 10, std::int16_t{0});
    const QTemporaryDir directory;
    SampleStore store(directory.path());
    store.append(sound);
    std::vector<SpeakerTurn> turns{{0.0, 1.8, 0}, {1.8, 3.0, 1}, {3.2, 4.0, 0}};
    moveBordersToPauses(turns, store);
    EXPECT_NEAR(turns[0].end, 2.05, 0.04);
    EXPECT_EQ(turns[1].start, turns[0].end);
    EXPECT_EQ(turns[1].end, 3.0);
}

TEST(VoiceModel, KnowsAPersonAgainAndNobodyElse) {
    if (!installedVoiceModel().model)
        GTEST_SKIP() << installedVoiceModel().note.toStdString();
    const auto reader = joined({readerSentence(u"0870"_s), readerSentence(u"0880"_s), readerSentence(u"0890"_s)});
    const Measured first(reader);
    const Measured again(joined({readerSentence(u"0920"_s), readerSentence(u"0930"_s)}));
    const Measured other(
        joined({prompt(u"conf-usermenu"_s), prompt(u"demo-abouttotry"_s), prompt(u"queue-periodic-announce"_s)}));
    EXPECT_NEAR(first.voice().norm(), 1.0, 1e-6);
    EXPECT_GE(first.voice().dot(again.voice()), 0.82);
    EXPECT_LT(first.voice().dot(other.voice()), 0.82);

    const QTemporaryDir directory;
    const QString studio = directory.filePath(u"studio.wav"_s);
    const QString telephone = directory.filePath(u"telephone.wav"_s);
    writeWave(studio, reader);
    ffmpeg({u"-i"_s, studio, u"-af"_s, u"highpass=300,lowpass=3400"_s, telephone});
    const Measured called(samplesOf(telephone));
    EXPECT_GE(called.voice().dot(again.voice()), 0.82);
    EXPECT_LT(called.voice().dot(other.voice()), 0.82);
}

TEST(VoiceModel, WhatIsMeasuredTogetherDoesNotMatter) {
    if (!installedVoiceModel().model)
        GTEST_SKIP() << installedVoiceModel().note.toStdString();
    std::vector<std::int16_t> sound;
    for (int round = 0; round < 4; ++round) {
        const auto part = joined({readerSentence(u"0870"_s), prompt(u"demo-abouttotry"_s)});
        sound.insert(sound.end(), part.begin(), part.end());
    }
    const Measured measured(sound);
    const auto windows = std::span(measured.windows());
    ASSERT_GT(windows.back().end, 3000); // more than one block
    const FrameMatrix all = measured.of(windows);
    const auto half = static_cast<Eigen::Index>(windows.size() / 2);
    const FrameMatrix tail = measured.of(windows.subspan(windows.size() / 2));
    EXPECT_LT((all.bottomRows(tail.rows()) - tail).norm(), 1e-3F * tail.norm());
    EXPECT_EQ(all.rows(), half + tail.rows());
}
