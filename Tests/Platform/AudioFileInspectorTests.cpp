#include "Support/Fakes/FakeAudioFileInspector.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

#include <gmock/gmock.h>

using namespace corvane;

namespace {

// 16-bit mono silence at 8 kHz.
QByteArray wave(int frames) {
    const auto u32 = [](quint32 value) {
        value = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char*>(&value), 4);
    };
    const auto bytes = static_cast<quint32>(frames) * 2;
    return "RIFF" + u32(36 + bytes) + "WAVEfmt " + u32(16) + u32(0x00010001) + u32(8000) + u32(16000) +
           u32(0x00100002) + "data" + u32(bytes) + QByteArray(static_cast<qsizetype>(bytes), '\0');
}

struct Fake {
    FakeAudioFileInspector inspector;
    void add(const QString& path, int frames) {
        writeFileAtomically(path, "x");
        inspector.setDuration(path, frames / 8000.0);
    }
};

struct Linux {
    FFmpegAudioFileInspector inspector;
    void add(const QString& path, int frames) { writeFileAtomically(path, wave(frames)); }
};

template<typename Implementation>
class AudioFileInspectorContract : public testing::Test {};
using Implementations = testing::Types<Fake, Linux>;
TYPED_TEST_SUITE(AudioFileInspectorContract, Implementations);

class FFmpegAudioFileInspectorTest : public testing::Test {
protected:
    [[nodiscard]] QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }
    // A file made by the ffmpeg program with the given options before its name.
    QString make(const char* name, const char* options) {
        QStringList arguments{u"-v"_s, u"error"_s};
        arguments += QString::fromUtf8(options).split(u' ', Qt::SkipEmptyParts);
        const CommandResult result = launcher.run(u"/usr/bin/ffmpeg"_s, arguments << at(name));
        EXPECT_EQ(result.status, 0) << result.output.toStdString();
        return at(name);
    }

    QTemporaryDir directory;
    LinuxProcessLauncher launcher;
    FFmpegAudioFileInspector inspector;
};

} // namespace

TYPED_TEST(AudioFileInspectorContract, TellsTheLengthOfAFileAndNothingOfWhatIsNone) {
    TypeParam implementation;
    const QTemporaryDir directory;
    for (const char* name : {"plain.wav", "http://x: 100%d é#?.wav", "-i", "no extension", "a,b|c.wav"}) {
        const QString path = directory.filePath(QString::fromUtf8(name).replace(u'/', u'_'));
        implementation.add(path, 12'345);
        EXPECT_EQ(implementation.inspector.durationSeconds(path), 12'345 / 8000.0) << name;
    }
    EXPECT_FALSE(implementation.inspector.durationSeconds(directory.path()));
    EXPECT_FALSE(implementation.inspector.durationSeconds(directory.filePath(u"absent.wav"_s)));
}

TEST_F(FFmpegAudioFileInspectorTest, KnowsCompressedAudioAndMovies) {
    constexpr const char* tone = "-f lavfi -i sine=duration=12.5";
    // Lossless containers are exact; encoders add up to a few frames of padding.
    EXPECT_DOUBLE_EQ(inspector.durationSeconds(make("a.flac", tone)).value_or(0), 12.5);
    for (const char* name : {"a.m4a", "a.ogg", "a.mp3", "a.opus", "a.aac"})
        EXPECT_NEAR(inspector.durationSeconds(make(name, tone)).value_or(0), 12.5, 0.06) << name;
    const QString bare = make("bare.mp3", "-f lavfi -i sine=duration=12.5 -write_xing 0 -q:a 4");
    EXPECT_NEAR(inspector.durationSeconds(bare).value_or(0), 12.5, 0.06);
    const QString movie = make("m.mp4", "-f lavfi -i testsrc=d=15:s=64x64:r=5 -f lavfi -i sine=duration=12.5");
    EXPECT_NEAR(inspector.durationSeconds(movie).value_or(0), 15, 0.02);
    EXPECT_FALSE(inspector.durationSeconds(make("silent.mp4", "-f lavfi -i testsrc=d=3:s=64x64:r=5")));

    const QByteArray whole = readFile(movie).value();
    writeFileAtomically(movie, whole.first(whole.size() / 2));
    EXPECT_FALSE(inspector.durationSeconds(movie)) << "cut short, its index lost";
}

TEST_F(FFmpegAudioFileInspectorTest, AWaveIsAsLongAsItsSamplesWhateverItsHeaderSays) {
    const QString path = at("a.wav");
    QByteArray content = wave(8000);
    writeFileAtomically(path, content.first(44 + 6000));
    EXPECT_EQ(inspector.durationSeconds(path), 3000 / 8000.0);
    for (const char byte : {'\0', '\xff'}) {
        writeFileAtomically(path, content.replace(40, 4, QByteArray(4, byte)));
        EXPECT_EQ(inspector.durationSeconds(path), 1.0);
    }
    writeFileAtomically(path, wave(0));
    EXPECT_FALSE(inspector.durationSeconds(path));
    writeFileAtomically(path, wave(8000));
    EXPECT_FALSE(FFmpegAudioFileInspector(std::chrono::milliseconds(-1)).durationSeconds(path)) << "no time for it";
}
