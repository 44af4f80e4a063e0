#include "Support/AudioSignal.h"
#include "Support/PrintQt.h"
#include "Support/PrivateAudioServer.h"
#include "Support/Tape.h"
#include "Support/WavFiles.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Audio/FFmpegAudioPlayers.h"
#include "CorvanePlatform/Linux/Audio/FFmpegDecoder.h"
#include "CorvanePlatform/Linux/Audio/PulseAudioInputs.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <mutex>
#include <optional>

using namespace corvane;

namespace {

constexpr int rate = 48'000;
constexpr double length = 2.5;

class AudioPlayerTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }
    // The sound in a file of the kind that its name says.
    QString make(const char* name) {
        writeWav(at("a.wav"), {rate, 1, AudioFormat::Sample::float32}, sound);
        if (at(name) != at("a.wav"))
            convert(name, "-f lavfi -i testsrc=d=2.5:s=64x64:r=5", "-b:a 192k");
        return at(name);
    }
    void convert(const char* name, const char* picture, const char* options) {
        QStringList arguments{u"-v"_s, u"error"_s, u"-i"_s, at("a.wav")};
        const auto add = [&arguments](const char* words) { arguments += QString::fromUtf8(words).split(u' '); };
        if (QByteArray(name).endsWith(".mp4"))
            add(picture);
        add(options);
        const CommandResult result = LinuxProcessLauncher().run(u"/usr/bin/ffmpeg"_s, arguments << at(name));
        EXPECT_EQ(result.status, 0) << result.output.toStdString();
    }
    [[nodiscard]] QString whyNotOpen(const char* name) const {
        try {
            (void)FFmpegAudioPlayers().open(at(name));
        } catch (const AudioPlayerError& error) {
            return error.text();
        }
        return u"opened"_s;
    }
    // What is heard of a file that is played from a time on to its end.
    Likeness likenessFrom(const QString& path, double seconds) {
        Tape tape(PulseAudioInputs().systemAudio());
        tape.start();
        const auto player = FFmpegAudioPlayers().open(path);
        player->setCurrentTime(seconds);
        EXPECT_EQ(player->currentTimeSeconds(), seconds);
        player->play({});
        EXPECT_TRUE(waitFor([&] { return player->currentTimeSeconds() > player->durationSeconds() - 0.06; }));
        EXPECT_TRUE(tape.waitForMore(0.3));
        EXPECT_NEAR(player->currentTimeSeconds(), length, 0.06) << "it stays at the end";
        const auto heard = tape.sound();
        return findSound(heard, std::span(sound).subspan(static_cast<std::size_t>(seconds * rate)));
    }

    QTemporaryDir directory;
    const std::vector<float> sound = speechLike(rate, length, 9);
};

double likeness(std::span<const float> a, std::span<const float> b) {
    const auto product = [](auto x, auto y) { return std::inner_product(x.begin(), x.end(), y.begin(), 0.0); };
    return product(a, b) / std::sqrt(product(a, a) * product(b, b));
}

std::vector<float> decodeFrom(FFmpegDecoder& decoder, double seconds, std::size_t frames) {
    decoder.seek(seconds);
    std::vector<float> samples(frames * static_cast<std::size_t>(decoder.channels()));
    samples.resize(decoder.read(samples) * static_cast<std::size_t>(decoder.channels()));
    return samples;
}

} // namespace

TEST_F(AudioPlayerTest, SeeksToTheFrameInEveryKindOfFile) {
    for (const char* name : {"a.wav", "a.flac", "a.mp3", "a.m4a", "a.ogg", "a.mp4"}) {
        SCOPED_TRACE(name);
        FFmpegDecoder decoder(make(name));
        const auto whole = decodeFrom(decoder, 0, rate * 3);
        EXPECT_NEAR(static_cast<double>(whole.size()) / rate, length, 0.03);
        for (const double seconds : {1.23456, 0.01, 2.3, 0.4}) {
            const auto part = decodeFrom(decoder, seconds, 3000);
            ASSERT_EQ(part.size(), 3000U);
            const auto expected = std::span(whole).subspan(static_cast<std::size_t>(std::lround(seconds * rate)), 3000);
            // Shifted by one frame the sound is like itself to 0.99; AAC fills in noise, never twice the same.
            EXPECT_GT(likeness(part, expected), 0.9995) << seconds;
        }
        EXPECT_TRUE(decodeFrom(decoder, length + 1, 100).empty());
        // The beginning of the file is the beginning of the sound: no encoder's padding before it.
        EXPECT_GT(findSound(whole, sound).correlation, 0.98);
        EXPECT_LT(std::abs(findSound(whole, sound).position), 3);
    }
}

TEST_F(AudioPlayerTest, WhatIsNoSoundIsRefusedWithAReason) {
    make("a.wav");
    writeFileAtomically(at("text.mp3"), QByteArray("no sound at all\n").repeated(1000));
    writeFileAtomically(at("empty.wav"), {});
    writeFileAtomically(at("list.m3u8"), "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\na.wav\n#EXT-X-ENDLIST\n");
    ASSERT_EQ(::mkfifo(QFile::encodeName(at("fifo.wav")).constData(), 0600), 0);
    convert("silent.mp4", "-f lavfi -i testsrc=d=1:s=64x64:r=5", "-map 1");
    ASSERT_EQ(::symlink("loop.wav", QFile::encodeName(at("loop.wav")).constData()), 0);
    writeFileAtomically(at("list.ffconcat"), "ffconcat version 1.0\nfile a.wav\n");
    EXPECT_NE(whyNotOpen("loop.wav"), u"opened");
    for (const char* name : {"text.mp3", "empty.wav", "list.m3u8", "list.ffconcat", "fifo.wav"})
        EXPECT_EQ(whyNotOpen(name), QString::fromUtf8(name) + u": It cannot be read as an audio file"_s);
    EXPECT_EQ(whyNotOpen("silent.mp4"), u"silent.mp4: It holds no sound that can be played");
    EXPECT_EQ(whyNotOpen("absent.wav"), u"absent.wav: No such file");
}

TEST_F(AudioPlayerTest, TheStretchThatWasAskedForIsHeard) {
    using Kind = PrivateAudioServer::Kind;
    for (const auto& [kind, name] : {std::pair(Kind::pulseAudio, "a.wav"), std::pair(Kind::pulseAudio, "a.m4a"),
                                     std::pair(Kind::pipeWire, "a.mp3")}) {
        SCOPED_TRACE(name);
        const PrivateAudioServer server(kind);
        const Likeness likeness = likenessFrom(make(name), 1.2);
        EXPECT_GT(likeness.correlation, 0.98);
        EXPECT_NEAR(likeness.gainDecibels, 0, 0.3);
    }
}

TEST_F(AudioPlayerTest, SeeksWhilePlayingAndOutlivesTheServer) {
    PrivateAudioServer server(PrivateAudioServer::Kind::pulseAudio);
    const auto player = FFmpegAudioPlayers().open(make("a.wav"));
    EXPECT_DOUBLE_EQ(player->durationSeconds(), length);
    player->play({});
    EXPECT_TRUE(waitFor([&] { return player->currentTimeSeconds() > 0.3; }));
    QElapsedTimer rest;
    rest.start();
    player->setCurrentTime(1.5);
    EXPECT_NEAR(player->currentTimeSeconds(), 1.5, 0.1);
    EXPECT_TRUE(waitFor([&] { return player->currentTimeSeconds() >= length; }));
    EXPECT_NEAR(static_cast<double>(rest.elapsed()) / 1000, 1, 0.5);

    server.stall();
    QString failure;
    std::mutex mutex;
    rest.start();
    player->play([&](const QString& reason) {
        const std::lock_guard lock(mutex);
        failure = reason;
    });
    EXPECT_LT(rest.elapsed(), 1000) << "a server that hangs does not hold up its caller";
    EXPECT_TRUE(waitFor([&] {
        const std::lock_guard lock(mutex);
        return failure == u"The sound server does not answer.";
    }));
    server.proceed();

    player->setCurrentTime(0.5);
    player->play({});
    EXPECT_TRUE(waitFor([&] { return player->currentTimeSeconds() > 0.6; }));
    server.kill();
    player->stop();
    const double stopped = player->currentTimeSeconds();
    EXPECT_GE(stopped, 0.6);
    EXPECT_LT(stopped, length);
    try {
        player->play({});
        ADD_FAILURE() << "played without a server";
    } catch (const AudioPlayerError& error) {
        EXPECT_EQ(error.text(), u"There is no sound server.");
    }
    player->setCurrentTime(2);
    EXPECT_EQ(player->currentTimeSeconds(), 2);
    server.start();
    player->play({});
    EXPECT_TRUE(waitFor([&] { return player->currentTimeSeconds() >= length; }));
}
