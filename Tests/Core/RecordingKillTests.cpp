// A process that is killed at any moment of a recording, or of finishing one, costs the buffers in flight and no more.
#include "Support/PrintQt.h"
#include "Support/WavFiles.h"

#include "CorvaneCore/Recording/Finalization.h"
#include "CorvaneCore/Recording/MeetingChunks.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <chrono>
#include <random>

using namespace corvane;

namespace {

// CORVANE_KILLS, or as many as meet each step of the work in a few seconds.
const int kills = std::max(qEnvironmentVariableIntValue("CORVANE_KILLS"), 40);
constexpr std::size_t bufferFrames = 480;

std::vector<QString> chunksIn(const QString& directory) {
    MeetingDraftMetadata draft;
    draft.chunksDirectory = directory;
    return chunkURLs(draft, LinuxFileTree());
}

} // namespace

TEST(RecordingKill, CostsTheBufferInFlightAndNoChunk) {
    const QTemporaryDir directory;
    SndfileAudioFiles files;
    const QString earlier = directory.filePath(u"earlier/chunks"_s);
    const QString output = directory.filePath(u"recordings/M.wav"_s);
    std::mt19937 random(20260302); // NOLINT(bugprone-random-generator-seed)
    std::size_t chunkCount = 0;
    std::size_t frames = 0;
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE(kill);
        const QString chunks = directory.filePath(u"%1/chunks"_s.arg(kill));
        QProcess recorder;
        recorder.start(QStringLiteral(RECORD_FOREVER), {chunks, earlier, output});
        ASSERT_TRUE(recorder.waitForReadyRead());
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 150'000);
        while (std::chrono::steady_clock::now() < end)
            recorder.waitForReadyRead(1);
        recorder.kill();
        ASSERT_TRUE(recorder.waitForFinished(60'000));
        ASSERT_EQ(recorder.exitStatus(), QProcess::CrashExit) << "it has to be killed, not to end";
        const QByteArray told = recorder.readAllStandardOutput();
        const auto written = told.first(told.lastIndexOf('\n')).split('\n').last().toULongLong();

        const FinalizationPlan plan{
            .meetingID = u"M"_s, .chunks = chunksIn(chunks), .systemChunks = {}, .output = output};
        ASSERT_NO_THROW(finalizeChunks(files, plan));
        const auto recorded = readWav<std::int32_t>(output);
        ASSERT_GE(recorded.size(), written);
        ASSERT_LE(recorded.size(), written + bufferFrames);
        for (std::size_t i = 0; i < recorded.size(); ++i)
            ASSERT_EQ(recorded[i], static_cast<std::int32_t>(i) + 1);
        chunkCount += plan.chunks.size();
        frames += recorded.size();
        // The next process finishes this one's chunks while it records.
        ASSERT_TRUE(kill == 0 || QDir(directory.filePath(u"earlier"_s)).removeRecursively());
        ASSERT_TRUE(QDir(directory.path()).rename(QString::number(kill), u"earlier"_s));
    }
    EXPECT_GT(chunkCount, static_cast<std::size_t>(kills)) << "the kills have to meet rotations";
    std::printf("%zu chunks and %zu frames of %d killed recorders\n", chunkCount, frames, kills);
}
