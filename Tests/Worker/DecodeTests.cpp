#include "Support/PrintQt.h"
#include "Worker/WorkerSamples.h"

#include "CorvaneWorker/Audio/AudioDecoder.h"
#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFile>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cmath>

using namespace corvane;
using namespace corvane::test;

namespace {

struct Decoded {
    std::vector<std::int16_t> samples;
    QStringList notes;

    [[nodiscard]] double seconds() const { return secondsOfSamples(static_cast<std::int64_t>(samples.size())); }
    // Root mean square of a stretch, against full scale.
    [[nodiscard]] double level(double from, double to) const {
        double sum = 0;
        const auto begin = static_cast<std::size_t>(from * sampleRate);
        const auto end = std::min(samples.size(), static_cast<std::size_t>(to * sampleRate));
        for (std::size_t index = begin; index < end; ++index)
            sum += std::pow(samples[index] / 32768.0, 2);
        return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, end - begin)));
    }
};

Decoded decode(const QString& path) {
    Decoded decoded;
    double last = 0;
    decoded.notes = decodeAudio(
                        path,
                        [&](std::span<const std::int16_t> block) {
                            decoded.samples.insert(decoded.samples.end(), block.begin(), block.end());
                        },
                        [&](double fraction) { last = fraction; })
                        .notes;
    EXPECT_LE(last, 1.0);
    return decoded;
}

class Decode : public testing::Test {
protected:
    [[nodiscard]] QString path(const char* name) const { return m_directory.filePath(QString::fromUtf8(name)); }
    // Two seconds of a tone, one of silence, one of the tone.
    QString tone(const char* name, const QStringList& options = {}) {
        const QString file = path(name);
        ffmpeg(
            QStringList{u"-f"_s, u"lavfi"_s, u"-i"_s, u"sine=440:d=4,volume=4*not(between(t\\,2\\,3)):eval=frame"_s} +
            options + QStringList{file});
        return file;
    }

private:
    QTemporaryDir m_directory;
};

QString refusal(const QString& path) {
    try {
        (void)decode(path);
    } catch (const WorkerError& error) {
        return error.text();
    }
    return {};
}

} // namespace

TEST_F(Decode, EveryFormGivesTheSameSoundAtTheSameTimes) {
    const auto words = [](const char* text) { return QString::fromLatin1(text).split(u' '); };
    const QStringList files = {
        tone("plain.wav"),
        tone("telephone.wav", words("-ar 8000 -c:a pcm_mulaw")),
        tone("surround.flac", words("-ac 6 -ar 48000")),
        tone("a.mp3", words("-ac 2 -ar 44100")),
        tone("a.m4a", words("-ac 2 -ar 48000")),
        tone("a.opus", words("-c:a libopus")),
        tone("movie.mp4", words("-f lavfi -i testsrc=d=4:s=64x64:r=10 -map 1:v -map 0:a -c:a aac")),
    };
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const Decoded decoded = decode(file);
        EXPECT_NEAR(decoded.seconds(), 4.0, 0.1);
        EXPECT_GT(decoded.level(0.2, 1.8), 0.05);
        EXPECT_LT(decoded.level(2.15, 2.85), 0.005);
        EXPECT_GT(decoded.level(3.2, 3.8), 0.05);
        EXPECT_THAT(decoded.notes, testing::IsEmpty());
    }
}

TEST_F(Decode, NamesAreNeverTakenForAnythingElse) {
    const QString plain = tone("plain.wav");
    for (const char* name : {"-i", "http:x", "a%03d.wav", "quote\"'s\nnew\\line", "会議 é.wav", "pipe:0"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(QFile::copy(plain, path(name)));
        EXPECT_NEAR(decode(path(name)).seconds(), 4.0, 0.01);
    }
}

TEST_F(Decode, DamageInTheMiddleCostsOnlyWhatIsDamaged) {
    const QString file = tone("a.mp3", {u"-b:a"_s, u"64k"_s});
    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek(damaged.size() / 3);
    damaged.write(QByteArray(2000, '\x5a'));
    damaged.close();
    const Decoded decoded = decode(file);
    EXPECT_NEAR(decoded.seconds(), 4.0, 0.4);
    EXPECT_GT(decoded.level(3.3, 3.8), 0.05);
}

TEST_F(Decode, AFileCutShortGivesWhatItHas) {
    const QString file = tone("plain.wav");
    const qint64 size = QFile(file).size();
    ASSERT_TRUE(QFile(file).resize(size / 2));
    EXPECT_NEAR(decode(file).seconds(), 2.0, 0.05);
}

TEST_F(Decode, WhatIsNoRecordingIsRefusedWithASentence) {
    const auto write = [this](const char* name, const QByteArray& content) {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    };
    write("text.wav", QByteArray("Dear diary, nothing happened.\n").repeated(500));
    write("list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\nplain.wav\n#EXT-X-ENDLIST\n");
    write("empty.wav", {});
    tone("plain.wav");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("fifo")).constData(), 0600), 0);
    ffmpeg({u"-f"_s, u"lavfi"_s, u"-i"_s, u"testsrc=d=1:s=64x64:r=10"_s, path("silent.mp4")});
    const std::pair<const char*, const char*> refusals[] = {{"text.wav", "not an audio or movie file"},
                                                            {"list.m3u8", "."},
                                                            {"empty.wav", "is empty"},
                                                            {"missing.wav", "does not exist"},
                                                            {"fifo", "not a file"},
                                                            {"", "not a file"},
                                                            {"silent.mp4", "holds no sound"}};
    for (const auto& [name, words] : refusals)
        EXPECT_THAT(refusal(path(name)).toStdString(), testing::HasSubstr(words)) << name;
}

TEST(SampleStore, ReadsBackWhatWasWrittenAndCutsAtTheEnds) {
    const QTemporaryDir directory;
    SampleStore store(directory.path());
    store.append(std::vector<std::int16_t>{1, 2, 3});
    store.append(std::vector<std::int16_t>{4, 5});
    EXPECT_EQ(store.read(1, 3), (std::vector<std::int16_t>{2, 3, 4}));
    EXPECT_EQ(store.read(-2, 4), (std::vector<std::int16_t>{1, 2}));
    EXPECT_EQ(store.read(4, 100), (std::vector<std::int16_t>{5}));
    EXPECT_TRUE(QDir(directory.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}
