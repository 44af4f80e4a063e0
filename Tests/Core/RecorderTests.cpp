// The recorders over real files and a device that the test feeds.
#include "Support/Fakes/FailingAudioFiles.h"
#include "Support/Fakes/FakeAudioInputs.h"
#include "Support/Fakes/FakeClock.h"
#include "Support/PrintQt.h"
#include "Support/WavFiles.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Library/MeetingMetadata.h"
#include "CorvaneCore/Recording/CaptureWarnings.h"
#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"
#include "CorvaneCore/Recording/ChunkedSystemAudioRecorder.h"
#include "CorvaneCore/Recording/SystemAudioCapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>

using namespace corvane;
using testing::ElementsAre;

namespace {

class RecorderTest : public testing::Test {
protected:
    RecorderTest() { makeMicrophone(0); }

    void makeMicrophone(qint64 nextIndex, double seconds = 90) {
        microphone = std::make_unique<ChunkedMicrophoneRecorder>(
            chunks, nextIndex, seconds, std::make_unique<FakeAudioInput>(device), files, clock);
        microphone->onChunkClosed = [this](const AudioChunk& chunk) { closed.push_back(chunk); };
    }
    [[nodiscard]] QString chunk(const char* name) const { return chunks + u'/' + QString::fromUtf8(name); }
    // All frames of all chunks, in their order.
    [[nodiscard]] std::vector<std::int32_t> recorded() const {
        std::vector<std::int32_t> all;
        for (const QString& name : QDir(chunks).entryList(QDir::Files, QDir::Name)) {
            const auto frames = readWav<std::int32_t>(chunks + u'/' + name);
            all.insert(all.end(), frames.begin(), frames.end());
        }
        return all;
    }
    [[nodiscard]] std::vector<std::int32_t> counted() const {
        std::vector<std::int32_t> all(static_cast<std::size_t>(device->counted()));
        std::iota(all.begin(), all.end(), 1);
        return all;
    }
    template<typename Operation>
    static QString errorOf(Operation operation) {
        try {
            operation();
        } catch (const Error& error) {
            return error.text();
        }
        return {};
    }

    QTemporaryDir directory;
    const QString chunks = directory.filePath(u"M/chunks"_s);
    std::shared_ptr<FakeAudioDevice> device = std::make_shared<FakeAudioDevice>();
    std::shared_ptr<FailingAudioFiles> files = std::make_shared<FailingAudioFiles>();
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::vector<AudioChunk> closed;
    std::unique_ptr<ChunkedMicrophoneRecorder> microphone;
};

} // namespace

TEST_F(RecorderTest, EachOperationFitsItsStatesAlone) {
    const QString wrong = u"notRecording"_s;
    const auto pause = [this] { microphone->pause(); };
    const auto resume = [this] { microphone->resume(); };
    const auto stop = [this] { microphone->stop(); };
    EXPECT_FALSE(QDir(chunks).exists()) << "making a recorder touches nothing";
    for (const QString& error : {errorOf(pause), errorOf(resume), errorOf(stop)})
        EXPECT_EQ(error, wrong);

    const QDateTime begin = clock->now();
    EXPECT_EQ(microphone->start(), chunk("000000.wav"));
    EXPECT_EQ(microphone->start(), chunk("000000.wav"));
    EXPECT_EQ(errorOf(resume), wrong);
    EXPECT_TRUE(device->deliverCounted(10));
    clock->advance(5);
    EXPECT_EQ(microphone->pause(), chunk("000000.wav"));
    EXPECT_THAT(closed, ElementsAre(AudioChunk{0, chunk("000000.wav"), begin, begin.addSecs(5)}));
    EXPECT_EQ(microphone->state(), RecordingState::paused(chunk("000000.wav")));
    EXPECT_FALSE(device->deliverCounted(10));
    EXPECT_EQ(errorOf(pause), wrong);
    microphone->rotate();
    EXPECT_EQ(microphone->state().kind, RecordingState::Kind::paused) << "a late tick finds nothing to do";

    EXPECT_EQ(microphone->start(), chunk("000001.wav")) << "goes on after the pause";
    EXPECT_TRUE(device->deliverCounted(10));
    microphone->pause();
    EXPECT_EQ(microphone->resume(), chunk("000002.wav"));
    microphone->onChunkClosed = [this](const AudioChunk& last) {
        EXPECT_EQ(microphone->state().kind, RecordingState::Kind::recording) << "announced before the state changes";
        closed.push_back(last);
    };
    EXPECT_EQ(microphone->stop(), chunk("000002.wav"));
    EXPECT_EQ(closed.size(), 3U);
    EXPECT_EQ(microphone->state(), RecordingState::stopped(chunk("000002.wav")));
    for (const QString& error :
         {errorOf(pause), errorOf(resume), errorOf(stop), errorOf([this] { microphone->start(); })})
        EXPECT_EQ(error, wrong);
    EXPECT_EQ(device->calls.join(u' '), u"start pause resume pause resume stop");
    EXPECT_EQ(recorded(), counted());

    makeMicrophone(17);
    closed.clear();
    EXPECT_EQ(microphone->start(), chunk("000017.wav"));
    microphone->pause();
    microphone->stop();
    ASSERT_EQ(closed.size(), 1U) << "nothing is open while paused";
    EXPECT_EQ(closed[0].index, 17);
    EXPECT_EQ(chunkIndex(chunk("abc.wav")), 0);
    EXPECT_EQ(chunkURL(u"/x"_s, 1'000'000), u"/x/1000000.wav");
}

TEST_F(RecorderTest, NoFrameIsLostOrDoubledWhileFilesChangeOver) {
    microphone->start();
    std::jthread capture([this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            device->deliverCounted(64);
            std::this_thread::yield();
        }
    });
    for (int rotation = 0; rotation < 200; ++rotation) {
        const auto before = microphone->monitor().read().recordedSeconds;
        while (microphone->monitor().read().recordedSeconds == before)
            std::this_thread::yield();
        microphone->rotate();
    }
    capture = std::jthread();
    microphone->stop();
    EXPECT_EQ(closed.size(), 201U);
    EXPECT_GE(device->counted(), 200 * 64);
    EXPECT_TRUE(recorded() == counted()) << recorded().size() << " of " << device->counted();
    EXPECT_DOUBLE_EQ(microphone->monitor().read().recordedSeconds, device->counted() / 48'000.0);
    std::printf("%d frames over 200 rotations\n", device->counted());
}

TEST_F(RecorderTest, AnOpeningThatFailsIsTriedAgainAndWhatIsLostIsKnown) {
    makeMicrophone(0, 0.05);
    microphone->start();
    device->deliverCounted(4800);
    files->creates = false;
    microphone->rotate();
    EXPECT_EQ(microphone->state(), RecordingState::recording(chunk("000000.wav"))) << "the last good one";
    EXPECT_EQ(closed.size(), 1U);
    const std::vector<std::int32_t> lost(2400);
    device->deliver(lost);
    const TrackHealth losing = microphone->monitor().read();
    EXPECT_DOUBLE_EQ(losing.lostSeconds, 0.05);
    EXPECT_TRUE(captureWarning(captureTracks::microphone, {}, losing)->contains(u"disk is full"_s));
    files->creates = true;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (microphone->state().url == chunk("000000.wav") && std::chrono::steady_clock::now() < limit)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_GE(chunkIndex(microphone->state().url), 2) << "the index of the failure is spent";
    device->deliverCounted(100);
    microphone->stop();
    EXPECT_EQ(recorded(), counted());
    const TrackHealth health = microphone->monitor().read();
    EXPECT_EQ(captureVerdict(health), CaptureVerdict::good);
    EXPECT_EQ(health.failedWrites, 0);
}

TEST_F(RecorderTest, AFullDiskIsCountedAndWarnedOfOnce) {
    microphone->start();
    const TrackHealth before = microphone->monitor().read();
    files->room = 1000;
    for (int i = 0; i < 3; ++i)
        device->deliverCounted(800);
    const TrackHealth full = microphone->monitor().read();
    EXPECT_EQ(full.failedWrites, 2);
    EXPECT_DOUBLE_EQ(full.lostSeconds, 1600 / 48'000.0);
    EXPECT_TRUE(captureWarning(captureTracks::microphone, before, full)->contains(u"disk is full"_s));
    device->deliverCounted(800);
    const TrackHealth still = microphone->monitor().read();
    EXPECT_FALSE(captureWarning(captureTracks::microphone, full, still)) << "once, however long it lasts";
    files->room = 1'000'000;
    device->deliverCounted(800);
    EXPECT_EQ(captureWarning(captureTracks::microphone, still, microphone->monitor().read()),
              u"Recording: the sound of the microphone is written again");
    microphone->stop();
    EXPECT_EQ(recorded().size(), 1600U);
}

TEST_F(RecorderTest, SystemAudioKeepsCapturingWhilePausedAndMayStartAgain) {
    ChunkedSystemAudioRecorder system(chunks, 0, 90, std::make_unique<FakeAudioInput>(device), files, clock);
    system.pause();
    system.stop();
    system.resume(); // starts
    system.start();
    device->deliverCounted(10);
    system.pause();
    const std::vector<std::int32_t> unheard(4800);
    EXPECT_TRUE(device->deliver(unheard)) << "the device goes on";
    EXPECT_EQ(system.monitor().read().lostSeconds, 0) << "dropped on purpose";
    system.rotate();
    system.start();
    device->deliverCounted(10);
    ASSERT_TRUE(QFile::remove(chunk("000000.wav")));
    system.rotate();
    ASSERT_TRUE(QFile::remove(chunk("000002.wav")));
    system.stop();
    system.stop();
    EXPECT_FALSE(device->deliver(unheard));
    EXPECT_THAT(system.chunkURLs(), ElementsAre(chunk("000000.wav"), chunk("000001.wav")));
    system.start();
    files->creates = false;
    system.rotate();
    device->deliver(unheard);
    EXPECT_DOUBLE_EQ(system.monitor().read().lostSeconds, 0.1);
    system.stop();
    EXPECT_THAT(system.chunkURLs(), ElementsAre(chunk("000000.wav"), chunk("000001.wav"), chunk("000003.wav")));
    device->startError = u"no sound server"_s;
    EXPECT_EQ(errorOf([&] { system.start(); }), u"no sound server");
    device->startError.reset();
    device->format.channels = 0;
    EXPECT_EQ(errorOf([&] { system.start(); }), u"System audio format is unavailable.");

    FakeAudioInputs inputs;
    ChunkedSystemAudioRecorder::primePermission(inputs);
    EXPECT_EQ(inputs.systemDevice->calls.join(u' '), u"start stop");
}

TEST(SystemAudioCapture, HasItsWordsAndAChunkItsForm) {
    EXPECT_EQ(SystemAudioCaptureError::coreAudioStatus(u"AudioDeviceStart"_s, -50).text(),
              u"AudioDeviceStart failed with Core Audio status -50.");
    EXPECT_EQ(systemAudioCaptureMode(u"coreAudio"_s), SystemAudioCaptureMode::coreAudio);
    EXPECT_EQ(systemAudioCaptureMode(u"off"_s), SystemAudioCaptureMode::off);
    EXPECT_FALSE(systemAudioCaptureMode(u"Off"_s));

    const AudioChunk chunk{3, u"/a b/000003.wav"_s, fromReferenceSeconds(0.5), fromReferenceSeconds(90)};
    const QByteArray json = R"({"index":3,"url":"file:///a%20b/000003.wav","startedAt":0.5,"endedAt":90})";
    EXPECT_EQ(encodeAudioChunk(chunk), json);
    EXPECT_EQ(decodeAudioChunk(json), chunk);
    EXPECT_THROW((void)decodeAudioChunk(R"({"index":3,"url":"file:///a","startedAt":0.5})"), JsonError);
}

TEST_F(RecorderTest, TheMonitorKnowsLevelSilenceAndEvents) {
    using Sample = AudioFormat::Sample;
    TrackMonitor monitor;
    const auto feed = [&](Sample type, auto sample, int frames) {
        const std::vector<decltype(sample)> samples(static_cast<std::size_t>(frames), sample);
        monitor.buffer(std::as_bytes(std::span(samples)).data(), samples.size(),
                       {.sampleRate = 1000, .channels = 1, .sample = type}, TrackMonitor::Outcome::written);
        return monitor.read();
    };
    EXPECT_DOUBLE_EQ(feed(Sample::signed16, std::int16_t{-16'384}, 1000).peak, 0.5);
    EXPECT_DOUBLE_EQ(feed(Sample::unsigned8, std::uint8_t{192}, 1000).rms, 0.5);
    EXPECT_DOUBLE_EQ(feed(Sample::signed24, std::array<std::uint8_t, 3>{0, 0, 0xE0}, 1000).peak, 0.25);
    EXPECT_DOUBLE_EQ(feed(Sample::signed32, std::int32_t{1 << 30}, 1000).peak, 0.5);
    const TrackHealth loud = feed(Sample::float32, 0.75F, 1000);
    EXPECT_DOUBLE_EQ(loud.peak, 0.75);
    EXPECT_EQ(loud.silentSeconds, 0);
    const TrackHealth nearly = feed(Sample::unsigned8, std::uint8_t{128}, 14'999);
    const TrackHealth silent = feed(Sample::float32, 0.0F, 1);
    EXPECT_DOUBLE_EQ(silent.currentSilenceSeconds, 15);
    EXPECT_FALSE(captureWarning(captureTracks::microphone, loud, nearly));
    EXPECT_EQ(captureWarning(captureTracks::microphone, nearly, silent),
              u"No sound comes from the microphone. Check that it is not muted.");
    EXPECT_FALSE(captureWarning(captureTracks::system, nearly, silent));
    EXPECT_EQ(captureWarning(captureTracks::microphone, silent, feed(Sample::float32, 0.1F, 1)), u"Recording");

    monitor.event({.kind = AudioInputEvent::Kind::deviceLost, .device = {}, .gapSeconds = 0});
    const TrackHealth lost = monitor.read();
    EXPECT_TRUE(captureWarning(captureTracks::microphone, silent, lost)->contains(u"device is gone"_s));
    EXPECT_FALSE(captureWarning(captureTracks::microphone, lost, feed(Sample::float32, 0.0F, 20'000)))
        << "a device that is gone is not muted";
    monitor.event({.kind = AudioInputEvent::Kind::deviceBack, .device = u"Desk"_s, .gapSeconds = 1.5});
    const TrackHealth back = monitor.read();
    EXPECT_EQ(captureWarning(captureTracks::microphone, lost, back), u"Recording: the microphone is back");
    EXPECT_THAT(back.deviceChanges, ElementsAre(u"lost", u"back: Desk"));
    monitor.event({.kind = AudioInputEvent::Kind::deviceChanged, .device = u"Desk"_s, .gapSeconds = 0.1});
    const TrackHealth elsewhere = monitor.read();
    EXPECT_EQ(captureWarning(captureTracks::microphone, back, elsewhere), u"Recording: the microphone changed to Desk");
    monitor.event({.kind = AudioInputEvent::Kind::gap, .device = u"Desk"_s, .gapSeconds = 3});
    EXPECT_EQ(captureWarning(captureTracks::microphone, elsewhere, monitor.read()),
              u"Recording: the sound server did not deliver the microphone for 3.0 seconds");
    EXPECT_EQ(captureVerdict(back), CaptureVerdict::soundMissing);
    EXPECT_EQ(back.gaps, 1);
}
