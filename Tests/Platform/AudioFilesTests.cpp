#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"
#include "CorvanePlatform/Linux/Audio/WavHeader.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <numbers>

using namespace corvane;

namespace {

using Sample = AudioFormat::Sample;

class SndfileAudioFilesTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }

    [[nodiscard]] std::int64_t framesSeenBy(const char* program, const QStringList& arguments) {
        const CommandResult result = launcher.run(QString::fromUtf8(program), arguments);
        bool isNumber = false;
        const auto frames = result.output.trimmed().split(u'\n').last().toLongLong(&isNumber);
        return result.status == 0 && isNumber ? frames : -1;
    }
    [[nodiscard]] std::int64_t framesInSox(const QString& path) {
        return framesSeenBy("/usr/bin/soxi", {u"-V1"_s, u"-s"_s, path});
    }
    [[nodiscard]] std::int64_t framesInFFmpeg(const QString& path) {
        return framesSeenBy("/usr/bin/ffprobe", {u"-v"_s, u"error"_s, u"-show_entries"_s, u"stream=duration_ts"_s,
                                                 u"-of"_s, u"default=noprint_wrappers=1:nokey=1"_s, path});
    }
    [[nodiscard]] QString whyNotOpen(const char* name) {
        try {
            return u"opened with %1 frames"_s.arg(files.open(at(name))->frameCount());
        } catch (const AudioFileError& error) {
            return error.text().section(u'/', -1); // without the temporary directory's name
        }
    }
    QByteArray write(const QString& path, const AudioFormat& format, std::size_t frames) {
        QByteArray bytes;
        for (std::size_t i = 0; i < frames * format.bytesPerFrame(); ++i)
            bytes.append(static_cast<char>(i * 7 % 61));
        const auto writer = files.create(path, format);
        EXPECT_TRUE(writer->write(reinterpret_cast<const std::byte*>(bytes.constData()), frames));
        writer->close();
        return bytes;
    }

    QTemporaryDir directory;
    LinuxProcessLauncher launcher;
    SndfileAudioFiles files;
};

QByteArray readAll(AudioFileReader& reader) {
    QByteArray all;
    std::array<std::byte, 1001> buffer{}; // no multiple of a frame
    while (const std::size_t frames = reader.readRaw(buffer))
        all.append(reinterpret_cast<const char*>(buffer.data()),
                   static_cast<qsizetype>(frames * reader.format().bytesPerFrame()));
    return all;
}

} // namespace

TEST_F(SndfileAudioFilesTest, EveryFormatComesBackAsItWasWrittenAndEveryReaderKnowsIt) {
    const QString path = at("a é.wav");
    for (const Sample sample :
         {Sample::unsigned8, Sample::signed16, Sample::signed24, Sample::signed32, Sample::float32}) {
        for (const int channels : {1, 2, 3}) {
            const AudioFormat format{.sampleRate = 44'100, .channels = channels, .sample = sample};
            const QByteArray written = write(path, format, 4'999);
            const auto reader = files.open(path);
            EXPECT_EQ(reader->format(), format);
            EXPECT_EQ(reader->frameCount(), 4'999);
            EXPECT_EQ(readAll(*reader), written);
            EXPECT_EQ(framesInSox(path), 4'999);
            EXPECT_EQ(framesInFFmpeg(path), 4'999);
        }
    }
}

TEST_F(SndfileAudioFilesTest, WholeNumbersBecomeFloatsBetweenMinusOneAndOne) {
    const auto writer = files.create(at("a.wav"), {.sampleRate = 8000, .channels = 2, .sample = Sample::signed16});
    constexpr std::array<std::int16_t, 4> samples{-32'768, 16'384, 0, 32'767};
    ASSERT_TRUE(writer->write(reinterpret_cast<const std::byte*>(samples.data()), 2));
    std::array<float, 8> floats{};
    ASSERT_EQ(files.open(at("a.wav"))->readFloat(floats), 2U) << "also while it is written";
    EXPECT_THAT(std::span(floats).first(4), testing::ElementsAre(-1.0F, 0.5F, 0.0F, 32'767.0F / 32'768));
}

TEST_F(SndfileAudioFilesTest, AFileIsItsOwnersAloneAndReplacesWhatWasThere) {
    const AudioFormat format{.sampleRate = 8000, .channels = 1, .sample = Sample::signed16};
    writeFileAtomically(at("target"), "kept");
    ASSERT_EQ(::symlink(QFile::encodeName(at("target")).constData(), QFile::encodeName(at("a.wav")).constData()), 0);
    write(at("a.wav"), format, 10);
    EXPECT_EQ(readFile(at("target")), "kept");
    struct stat status {};
    ASSERT_EQ(::lstat(QFile::encodeName(at("a.wav")).constData(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0600U);

    EXPECT_THROW((void)files.create(at("no/such/a.wav"), format), AudioFileError);
    EXPECT_THROW((void)files.create(directory.path(), format), AudioFileError);
    EXPECT_THROW((void)files.create(at("b.wav"), AudioFormat{}), AudioFileError);
}

TEST_F(SndfileAudioFilesTest, AFileHasItsHeaderWhenItGetsItsName) {
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, QFile::encodeName(directory.path()).constData(), IN_CREATE | IN_MOVED_TO), 0);
    // What a process left that was killed before the header stood.
    writeFileAtomically(at(".a.wav.new"), "");
    const auto writer = files.create(at("a.wav"), {.sampleRate = 8000, .channels = 1, .sample = Sample::signed16});
    EXPECT_EQ(files.open(at("a.wav"))->frameCount(), 0);
    alignas(inotify_event) std::array<char, 4096> events{};
    const ssize_t length = ::read(watch, events.data(), events.size());
    QStringList seen;
    for (ssize_t position = 0; position < length;) {
        const auto* event = reinterpret_cast<const inotify_event*>(&events[static_cast<std::size_t>(position)]);
        if (QString::fromUtf8(event->name) == u"a.wav")
            seen.append(event->mask & IN_CREATE ? u"created"_s : u"renamed"_s);
        position += static_cast<ssize_t>(sizeof *event + event->len);
    }
    ::close(watch);
    EXPECT_EQ(seen, QStringList(u"renamed"_s));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"a.wav"_s));
}

TEST_F(SndfileAudioFilesTest, AFileThatIsNotClosedShowsEveryReaderAllThatWasWritten) {
    const AudioFormat format{.sampleRate = 48'000, .channels = 2, .sample = Sample::float32};
    const std::vector<float> sound(1000 * 2, 0.25F);
    const auto writer = files.create(at("a.wav"), format);
    for (std::int64_t frames = 1000; frames <= 3000; frames += 1000) {
        ASSERT_TRUE(writer->write(reinterpret_cast<const std::byte*>(sound.data()), 1000));
        for (const std::int64_t seen :
             {files.open(at("a.wav"))->frameCount(), framesInSox(at("a.wav")), framesInFFmpeg(at("a.wav"))})
            EXPECT_EQ(seen, frames);
    }
}

TEST_F(SndfileAudioFilesTest, LengthsBeyondFourGibibytesAreTrue) {
    const AudioFormat format{.sampleRate = 48'000, .channels = 2, .sample = Sample::float32};
    for (const std::int64_t frames : {536'870'900LL, 536'870'912LL, 700'000'000LL}) {
        QFile file(at("large.wav")); // sparse: only its header takes room
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        const WavHeader header(format, static_cast<std::uint64_t>(frames) * 8);
        file.write(reinterpret_cast<const char*>(header.bytes().data()), static_cast<qint64>(header.bytes().size()));
        ASSERT_TRUE(file.resize(static_cast<qint64>(header.bytes().size()) + frames * 8));
        file.close();
        EXPECT_EQ(files.open(at("large.wav"))->frameCount(), frames);
        EXPECT_EQ(framesInFFmpeg(at("large.wav")), frames);
    }
}

TEST_F(SndfileAudioFilesTest, AHeaderThatLiesHidesNoSamples) {
    const AudioFormat format{.sampleRate = 8000, .channels = 1, .sample = Sample::signed16};
    write(at("a.wav"), format, 1000);
    const QByteArray whole = readFile(at("a.wav")).value();
    constexpr qsizetype header = 80;
    ASSERT_EQ(whole.size(), header + 2000);
    for (const char* length : {"\0\0\0\0", "\xff\xff\xff\xff", "\0\0\0\x70"}) {
        QByteArray lying = whole;
        writeFileAtomically(at("lying.wav"), lying.replace(header - 4, 4, QByteArray(length, 4)));
        const auto reader = files.open(at("lying.wav"));
        EXPECT_EQ(reader->frameCount(), 1000);
        EXPECT_EQ(readAll(*reader), whole.sliced(header));
    }
    writeFileAtomically(at("cut.wav"), whole.first(header + 501));
    const auto reader = files.open(at("cut.wav"));
    EXPECT_EQ(reader->frameCount(), 250);
    EXPECT_EQ(readAll(*reader), whole.sliced(header, 500));
    writeFileAtomically(at("silent.wav"), whole.first(header));
    EXPECT_EQ(files.open(at("silent.wav"))->frameCount(), 0);
}

TEST_F(SndfileAudioFilesTest, WhatIsNoWaveIsRefusedWithAReason) {
    write(at("a.wav"), {.sampleRate = 8000, .channels = 1, .sample = Sample::signed16}, 1000);
    writeFileAtomically(at("cut.wav"), readFile(at("a.wav")).value().first(60));
    writeFileAtomically(at("empty.wav"), {});
    writeFileAtomically(at("text.wav"), QByteArray("no sound at all\n").repeated(1000));
    ASSERT_EQ(::mkfifo(QFile::encodeName(at("fifo.wav")).constData(), 0600), 0);
    for (const char* name : {"law.wav", "a.flac"}) {
        const QStringList arguments{u"-n"_s, u"-r"_s, u"8000"_s, u"-e"_s, u"mu-law"_s, at(name), u"synth"_s, u"0.1"_s};
        ASSERT_EQ(launcher.run(u"/usr/bin/sox"_s, arguments).status, 0);
    }
    EXPECT_EQ(whyNotOpen("cut.wav"), u"cut.wav: Not a WAV file, or its beginning is damaged");
    EXPECT_EQ(whyNotOpen("text.wav"), u"text.wav: Not a WAV file, or its beginning is damaged");
    EXPECT_EQ(whyNotOpen("a.flac"), u"a.flac: Not a WAV file, or its beginning is damaged");
    EXPECT_EQ(whyNotOpen("law.wav"), u"law.wav: A WAV file with samples of a kind that Corvane does not read");
    EXPECT_EQ(whyNotOpen("empty.wav"), u"empty.wav: The file is empty");
    EXPECT_EQ(whyNotOpen("fifo.wav"), u"fifo.wav: Not a regular file");
    EXPECT_EQ(whyNotOpen("absent.wav"), u"absent.wav: No such file or directory");
}

TEST_F(SndfileAudioFilesTest, AFullDiskKeepsWhatItTook) {
    const QString disk = at("disk");
    ASSERT_TRUE(QDir().mkpath(disk));
    if (::mount("tmpfs", QFile::encodeName(disk).constData(), "tmpfs", 0, "size=100k") != 0)
        GTEST_SKIP() << "mounting a small disk takes root";
    {
        const AudioFormat format{.sampleRate = 48'000, .channels = 2, .sample = Sample::signed24};
        const QString path = disk + u"/a.wav"_s;
        const auto writer = files.create(path, format);
        const std::vector<std::byte> frames(1000 * format.bytesPerFrame());
        int writes = 0;
        while (writes < 1000 && writer->write(frames.data(), 1000))
            ++writes;
        EXPECT_FALSE(writer->write(frames.data(), 1000));
        // What fits into the pages of the disk, in whole frames.
        constexpr std::int64_t fits = (100 * 1024 - 80) / 6;
        EXPECT_EQ(files.open(path)->frameCount(), fits);
        EXPECT_EQ(framesInSox(path), fits);
        EXPECT_EQ(writes, fits / 1000);
        writer->close();
        EXPECT_THROW((void)files.create(disk + u"/b.wav"_s, format), AudioFileError);
        EXPECT_FALSE(QFile::exists(disk + u"/b.wav"_s));
    }
    EXPECT_EQ(::umount(QFile::encodeName(disk).constData()), 0);
}

TEST_F(SndfileAudioFilesTest, ResamplingKeepsAToneToAnInaudibleError) {
    constexpr auto tone = [](double second) { return 0.8 * std::sin(2 * std::numbers::pi * 997 * second); };
    const auto resampler = files.resampler(44'100, 48'000);
    std::vector<float> input;
    for (int i = 0; i < 44'100; ++i)
        input.push_back(static_cast<float>(tone(i / 44'100.0)));
    std::vector<float> output(60'000);
    std::size_t consumed = 0;
    std::size_t produced = 0;
    for (bool isFlushed = false; !isFlushed;) {
        const auto rest = std::span(input).subspan(consumed);
        const auto step = resampler->process(rest.first(std::min<std::size_t>(rest.size(), 777)),
                                             std::span(output).subspan(produced).first(500));
        consumed += step.consumed;
        produced += step.produced;
        isFlushed = rest.empty() && step.produced == 0;
    }
    EXPECT_EQ(consumed, input.size());
    ASSERT_NEAR(static_cast<double>(produced), 48'000, 1);
    double worst = 0;
    for (std::size_t i = 1000; i < 47'000; ++i)
        worst = std::max(worst, std::abs(output[i] - tone(static_cast<double>(i) / 48'000)));
    EXPECT_LT(worst, 1e-6) << "below -118 dB of full scale";
    EXPECT_THROW((void)files.resampler(0, 48'000), AudioFileError);
}
