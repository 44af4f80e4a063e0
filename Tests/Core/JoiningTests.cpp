// Joining and mixing chunk files.
#include "Support/Fakes/FailingAudioFiles.h"
#include "Support/PrintQt.h"
#include "Support/WavFiles.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Recording/AudioFileMixer.h"
#include "CorvaneCore/Recording/Finalization.h"
#include "CorvaneCore/Recording/MeetingChunks.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

using namespace corvane;
using testing::ElementsAre;

namespace {

using Sample = AudioFormat::Sample;

constexpr AudioFormat numbers{.sampleRate = 16'000, .channels = 1, .sample = Sample::signed16};

class JoiningTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }

    // `first`, `first` + 1, ...
    QString chunk(const char* name, std::int16_t first, std::size_t frames) {
        std::vector<std::int16_t> samples(frames);
        std::iota(samples.begin(), samples.end(), first);
        writeWav(at(name), numbers, samples);
        return at(name);
    }
    QString tone(const char* name, const AudioFormat& format, std::size_t frames, std::vector<float> perChannel) {
        std::vector<float> samples;
        for (std::size_t i = 0; i < frames; ++i)
            samples.insert(samples.end(), perChannel.begin(), perChannel.end());
        writeWav(at(name), format, samples);
        return at(name);
    }
    QString noise(const char* name, const AudioFormat& format, double seconds) {
        std::mt19937 random(7);
        std::uniform_real_distribution<float> level(-0.5F, 0.5F);
        std::vector<float> samples(static_cast<std::size_t>(seconds * format.sampleRate * format.channels));
        std::ranges::generate(samples, [&] { return level(random); });
        writeWav(at(name), format, samples);
        return at(name);
    }
    // The file at 48 kHz, from a single run of the resampler.
    std::vector<float> resampled(const QString& path) {
        auto input = readWav<float>(path);
        const auto resampler = files.resampler(files.open(path)->format().sampleRate, 48'000);
        std::vector<float> output(input.size() * 7);
        std::size_t produced = 0;
        for (std::size_t consumed = 0, last = 1; last > 0;) {
            const auto step =
                resampler->process(std::span(input).subspan(consumed), std::span(output).subspan(produced));
            consumed += step.consumed;
            produced += step.produced;
            last = step.consumed + step.produced;
        }
        output.resize(produced);
        return output;
    }
    static AudioFormat floats(int sampleRate, int channels) { return {sampleRate, channels, Sample::float32}; }
    QString errorOfJoining(const std::vector<QString>& chunks) {
        try {
            AudioChunkConcatenator::concatenate(files, chunks, at("out/all.wav"));
        } catch (const Error& error) {
            return error.text();
        }
        return {};
    }

    QTemporaryDir directory;
    SndfileAudioFiles files;
};

} // namespace

TEST_F(JoiningTest, ChunksAreJoinedByNameWithNothingBetweenThem) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("b")));
    const std::vector<QString> chunks{chunk("000003.wav", 20'501, 400), chunk("000000.wav", 1, 20'000),
                                      chunk("b/000001.wav", 20'001, 500), chunk("000002.wav", 0, 0)};
    std::vector<double> progress;
    const QString all = at("new/out/all.wav");
    EXPECT_EQ(AudioChunkConcatenator::concatenate(files, chunks, all, [&](double done) { progress.push_back(done); }),
              all);
    std::vector<std::int16_t> expected(20'900);
    std::iota(expected.begin(), expected.end(), std::int16_t{1});
    EXPECT_EQ(readWav<std::int16_t>(all), expected);
    EXPECT_EQ(files.open(all)->format(), numbers);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_DOUBLE_EQ(progress.back(), 1);
}

TEST_F(JoiningTest, AChunkOfAnotherFormatIsConvertedToTheFirstOnes) {
    const QString first = tone("0.wav", floats(48'000, 2), 4800, {0.25F, -0.5F});
    std::vector<std::int16_t> half(16'000, 16'384);
    writeWav(at("1.wav"), numbers, half);
    AudioChunkConcatenator::concatenate(files, {at("1.wav"), first}, at("all.wav"));
    const auto reader = files.open(at("all.wav"));
    EXPECT_EQ(reader->format(), floats(48'000, 2));
    const auto samples = readWav<float>(at("all.wav"));
    EXPECT_NEAR(static_cast<double>(samples.size()) / 2, 4800 + 48'000, 2);
    EXPECT_EQ(samples[0], 0.25F);
    EXPECT_EQ(samples[2 * 4799 + 1], -0.5F);
    EXPECT_NEAR(samples[2 * 28'000], 0.5, 1e-4);
    EXPECT_NEAR(samples[2 * 28'000 + 1], 0.5, 1e-4);

    // Where only the type of the samples differs each channel stays what it is.
    const AudioFormat stereo{.sampleRate = 48'000, .channels = 2, .sample = AudioFormat::Sample::signed16};
    writeWav(at("!.wav"), stereo, std::vector<std::int16_t>{8192, -8192});
    AudioChunkConcatenator::concatenate(files, {at("!.wav"), first}, at("pairs.wav"));
    const auto pairs = readWav<std::int16_t>(at("pairs.wav"));
    ASSERT_EQ(pairs.size(), 2U + 2 * 4800);
    EXPECT_EQ(pairs[2], 8192);
    EXPECT_EQ(pairs[3], -16'384);
}

TEST_F(JoiningTest, AChunkThatCannotBeReadEndsTheWorkAndIsNamed) {
    EXPECT_EQ(errorOfJoining({}), u"noChunks");
    EXPECT_FALSE(QDir(at("out")).exists());
    const QString good = chunk("000000.wav", 1, 100);
    writeFileAtomically(at("000001.wav"), QByteArray("garbage").repeated(100));
    EXPECT_TRUE(errorOfJoining({good, at("000001.wav")}).contains(QStringLiteral("/000001.wav: ")));
    EXPECT_EQ(readWav<std::int16_t>(at("out/all.wav")).size(), 100U) << "what was written stays";
    EXPECT_TRUE(errorOfJoining({good, at("000009.wav")}).contains(QStringLiteral("/000009.wav: No such file")));
}

TEST_F(JoiningTest, AMixIsAsLongAsTheLongerSourceCutToAWholeFrame) {
    struct Case {
        int rate, otherRate, channels;
        std::size_t frames, otherFrames;
        std::int64_t mixed;
    };
    for (const Case& c :
         {Case{48'000, 48'000, 1, 480'000, 192'000, 480'000}, Case{44'100, 48'000, 2, 44'101, 0, 48'001},
          Case{100'000, 8000, 1, 100'001, 1, 48'000}, Case{44'100, 16'000, 1, 1, 7, 21},
          Case{96'000, 44'100, 2, 1, 0, 0}, Case{8000, 22'050, 2, 65'536, 22'050, 393'216},
          Case{192'000, 11'025, 1, 300'000, 17'001, 75'000}}) {
        SCOPED_TRACE(testing::Message() << c.rate << "/" << c.otherRate << ", " << c.frames << "/" << c.otherFrames);
        const QString a = tone("a.wav", floats(c.rate, c.channels), c.frames,
                               std::vector<float>(static_cast<std::size_t>(c.channels), 0.5F));
        const QString b = tone("b.wav", floats(c.otherRate, 1), c.otherFrames, {0.5F});
        for (const auto& [primary, secondary] : {std::pair(a, b), std::pair(b, a)}) {
            EXPECT_EQ(AudioFileMixer::mix(files, primary, secondary, at("mix.wav")), at("mix.wav"));
            EXPECT_EQ(files.open(at("mix.wav"))->frameCount(), c.mixed);
            EXPECT_EQ(files.open(at("mix.wav"))->format(), floats(48'000, 1));
        }
    }
    const QString empty = tone("empty.wav", floats(48'000, 1), 0, {0});
    try {
        AudioFileMixer::mix(files, empty, empty, at("none/mix.wav"));
        FAIL() << "mixed nothing";
    } catch (const AudioFileMixError& error) {
        EXPECT_EQ(error.text(), u"No audio files were available to mix.");
    }
}

TEST_F(JoiningTest, EachSourceEntersAtUnityAndTheSumIsScaled) {
    const QString mono = tone("mono.wav", floats(48'000, 1), 200'000, {0.5F});
    const QString stereo = tone("stereo.wav", floats(48'000, 2), 100'000, {0.75F, -0.25F});
    AudioFileMixer::mix(files, mono, stereo, at("mix.wav"));
    const auto mix = readWav<float>(at("mix.wav"));
    ASSERT_EQ(mix.size(), 200'000U);
    EXPECT_FLOAT_EQ(mix[0], 0.9F * (0.5F + 0.25F));
    EXPECT_FLOAT_EQ(mix[99'999], 0.9F * (0.5F + 0.25F));
    EXPECT_FLOAT_EQ(mix[100'000], 0.9F * 0.5F) << "silence stands for the shorter one";
    EXPECT_FLOAT_EQ(mix[199'999], 0.9F * 0.5F);

    // Another rate keeps its level and its place.
    std::vector<float> sine(44'100);
    for (std::size_t i = 0; i < sine.size(); ++i)
        sine[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * 441 * static_cast<double>(i) / 44'100));
    writeWav(at("sine.wav"), floats(44'100, 1), sine);
    AudioFileMixer::mix(files, at("sine.wav"), tone("empty.wav", floats(48'000, 1), 0, {0}), at("mix.wav"));
    const auto resampled = readWav<float>(at("mix.wav"));
    ASSERT_EQ(resampled.size(), 48'000U);
    double worst = 0;
    for (std::size_t i = 1000; i < 47'000; ++i)
        worst = std::max(worst, std::abs(resampled[i] - 0.45 * std::sin(2 * std::numbers::pi * 441 *
                                                                        static_cast<double>(i) / 48'000)));
    EXPECT_LT(worst, 1e-6);
}

TEST_F(JoiningTest, AMixInStretchesHasNoSeams) {
    constexpr double seconds = 36; // more than three stretches
    const QString empty = tone("empty.wav", floats(48'000, 1), 0, {0});
    for (const int rate : {44'100, 11'025, 16'000, 96'000, 44'056, 48'000}) {
        SCOPED_TRACE(rate);
        const QString source = noise("source.wav", floats(rate, 1), seconds);
        const auto expected = rate == 48'000 ? readWav<float>(source) : resampled(source);
        AudioFileMixer::mix(files, source, empty, at("mix.wav"));
        const auto mix = readWav<float>(at("mix.wav"));
        ASSERT_EQ(mix.size(), static_cast<std::size_t>(seconds * 48'000));
        ASSERT_GE(expected.size(), mix.size());
        double worst = 0;
        double sum = 0;
        double sumOfErrors = 0;
        for (std::size_t i = 0; i < mix.size(); ++i) {
            const double error = mix[i] / 0.9 - expected[i];
            worst = std::max(worst, std::abs(error));
            sum += expected[i] * expected[i];
            sumOfErrors += error * error;
        }
        EXPECT_LT(worst, 1e-6) << "no more than the rounding of the resampler";
        EXPECT_LT(10 * std::log10(sumOfErrors / sum), -128);
        AudioFileMixer::mix(files, empty, source, at("again.wav"));
        EXPECT_EQ(readWav<float>(at("again.wav")), mix) << "whichever thread renders which stretch";
    }
}

TEST_F(JoiningTest, AMixThatFailsOrIsGivenUpOnTheWayKeepsWhatCameBefore) {
    const QString source = noise("source.wav", floats(44'100, 1), 60);
    const QString other = noise("other.wav", floats(48'000, 2), 50);
    FailingAudioFiles failing;
    const auto errorOfMixing = [&](const AudioProgress& progress = {}) {
        try {
            AudioFileMixer::mix(failing, source, other, at("mix.wav"), progress);
        } catch (const Error& error) {
            return error.text();
        }
        return QString();
    };
    EXPECT_EQ(errorOfMixing(), QString());
    const auto whole = readWav<float>(at("mix.wav"));
    const auto keepsTheBeginning = [&] {
        const auto left = readWav<float>(at("mix.wav"));
        return !left.empty() && left.size() < whole.size() && std::equal(left.begin(), left.end(), whole.begin());
    };
    failing.readable = 30 * 44'100;
    EXPECT_EQ(errorOfMixing(), u"the disk has a bad sector");
    EXPECT_TRUE(keepsTheBeginning());
    failing.readable = INT64_MAX;
    failing.room = 30 * 48'000;
    EXPECT_EQ(errorOfMixing(), u"Audio mix failed: the disk took no more.");
    EXPECT_TRUE(keepsTheBeginning());
    failing.room = INT64_MAX;
    EXPECT_EQ(errorOfMixing([](double done) {
                  if (done > 0.3)
                      throw AudioFileError(QStringLiteral("given up"));
              }),
              u"given up");
    EXPECT_TRUE(keepsTheBeginning());
}

TEST_F(JoiningTest, FinishingMixesTheTwoSourcesAndLeavesNoTraceOfTheWork) {
    const QString mono = tone("000000.wav", floats(48'000, 1), 1000, {0.5F});
    const QString system = tone("s0.wav", floats(48'000, 2), 500, {0.25F, 0.25F});
    const FinalizationPlan plan{.meetingID = QStringLiteral("M"),
                                .chunks = {mono, mono},
                                .systemChunks = {system},
                                .output = at("recordings/M.wav")};
    EXPECT_EQ(finalizeChunks(files, plan), plan.output);
    EXPECT_EQ(QDir(at("recordings")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList(QStringLiteral("M.wav")));
    EXPECT_EQ(readWav<float>(plan.output).size(), 2000U);

    writeFileAtomically(system, "damaged");
    EXPECT_THROW(finalizeChunks(files, plan), AudioFileError);
    EXPECT_TRUE(QFile::exists(at("recordings/M-mix/microphone.wav"))) << "stays for the next attempt";
    tone("s0.wav", floats(48'000, 2), 500, {0.25F, 0.25F});
    EXPECT_EQ(finalizeChunks(files, plan), plan.output);
    EXPECT_FALSE(QDir(at("recordings/M-mix")).exists());
}

TEST_F(JoiningTest, ChunksOfAMeetingAreFoundInItsDraftAndItsDirectory) {
    const LinuxFileTree tree;
    MeetingDraftMetadata draft;
    draft.chunksDirectory = at("chunks");
    for (const char* name : {"chunks/000002.WAV", "chunks/000000.wav", "chunks/.000003.wav.new", "chunks/.4.wav",
                             "chunks/notes.txt", "elsewhere/000001.wav", "system-chunks/000000.wav"}) {
        createPrivateDirectory(QFileInfo(at(name)).path());
        writeFileAtomically(at(name), "x");
    }
    draft.chunks = {at("elsewhere/000001.wav"), at("chunks/000000.wav"), at("chunks/000007.wav")};
    const auto chunks = chunkURLs(draft, tree);
    EXPECT_THAT(chunks, ElementsAre(at("chunks/000000.wav"), at("elsewhere/000001.wav"), at("chunks/000002.WAV")));
    EXPECT_THAT(systemChunkURLs(draft, tree), ElementsAre(at("system-chunks/000000.wav")));
    EXPECT_EQ(nextChunkIndex(chunks), 3);
    EXPECT_EQ(nextChunkIndex({QStringLiteral("/x/abc.wav"), QStringLiteral("/x/-5.wav"),
                              QStringLiteral("/x/9223372036854775807.wav")}),
              0);
    draft.chunksDirectory.reset();
    EXPECT_TRUE(systemChunkURLs(draft, tree).empty());
    EXPECT_EQ(chunkURLs(draft, tree).size(), 2U);
}
