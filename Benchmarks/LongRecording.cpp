// Does a long recording grow? Four hours of microphone and system audio, or as many as the first argument says, go from
// fast devices through both recorders into real chunks of 90 seconds, which are removed as they close. At each quarter
// the memory and the open files are printed; past the first they may not grow by more than the limits.
#include "Support/Fakes/FakeAudioInputs.h"

#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"
#include "CorvaneCore/Recording/ChunkedSystemAudioRecorder.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace corvane;

namespace {

constexpr double limitMebibytes = 2;
constexpr std::int64_t limitFiles = 0;
constexpr std::int64_t chunkSeconds = 90;
constexpr std::size_t bufferFrames = 4096;

struct Use {
    double mebibytes = 0;
    std::int64_t files = 0;
};

Use present() {
    Use use;
    QFile memory(QStringLiteral("/proc/self/statm"));
    if (memory.open(QIODevice::ReadOnly))
        use.mebibytes = memory.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) /
                        (1024.0 * 1024.0);
    use.files = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
    return use;
}

// A device that gives all its sound, at most a chunk's length ahead of the recorder's rotations.
class FastDevice {
public:
    FastDevice(AudioFormat format, std::int64_t seconds) : m_total(seconds * format.sampleRate) {
        device->format = format;
    }
    // On a thread of its own.
    void run() {
        const std::vector<std::byte> buffer(bufferFrames * device->format.bytesPerFrame(), std::byte{1});
        while (m_given < m_total) {
            const std::int64_t next = m_next;
            if (m_given >= next) {
                m_next.wait(next);
                continue;
            }
            device->deliver(buffer);
            m_given += bufferFrames;
        }
    }
    // True once for each chunk's length that was given.
    [[nodiscard]] bool isChunkFull() const { return m_given >= m_next; }
    void allowNext() {
        m_next += chunkSeconds * device->format.sampleRate;
        m_next.notify_one();
    }
    [[nodiscard]] bool isDone() const { return m_given >= m_total; }
    [[nodiscard]] double seconds() const { return static_cast<double>(m_given) / device->format.sampleRate; }

    const std::shared_ptr<FakeAudioDevice> device = std::make_shared<FakeAudioDevice>();

private:
    std::int64_t m_total;
    std::atomic<std::int64_t> m_given = 0;
    std::atomic<std::int64_t> m_next = 0;
};

bool isWhole(const char* name, const TrackHealth& health, const FastDevice& device) {
    std::printf("%s: %.1f s given, %.1f s written, %.1f s lost\n", name, device.seconds(), health.recordedSeconds,
                health.lostSeconds);
    return health.lostSeconds == 0 && std::abs(health.recordedSeconds - device.seconds()) < 0.001;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto seconds = static_cast<std::int64_t>((argc > 1 ? std::atof(argv[1]) : 4.0) * 3600);
    const QTemporaryDir directory;
    const auto files = std::make_shared<SndfileAudioFiles>();
    const auto clock = std::make_shared<SystemClock>();
    FastDevice voice({.sampleRate = 44'100, .channels = 1, .sample = AudioFormat::Sample::signed16}, seconds);
    FastDevice music({.sampleRate = 48'000, .channels = 2, .sample = AudioFormat::Sample::float32}, seconds);
    // Their own timers must not add rotations: those follow the sound, not the clock.
    constexpr double never = 1e6;
    ChunkedMicrophoneRecorder microphone(directory.filePath(QStringLiteral("chunks")), 0, never,
                                         std::make_unique<FakeAudioInput>(voice.device), files, clock);
    ChunkedSystemAudioRecorder system(directory.filePath(QStringLiteral("system-chunks")), 0, never,
                                      std::make_unique<FakeAudioInput>(music.device), files, clock);
    microphone.onChunkClosed = [](const AudioChunk& chunk) { QFile::remove(chunk.url); };
    microphone.start();
    system.start();
    voice.allowNext();
    music.allowNext();
    std::thread voiceThread([&voice] { voice.run(); });
    std::thread musicThread([&music] { music.run(); });

    std::vector<Use> quarters;
    const auto begun = std::chrono::steady_clock::now();
    while (!voice.isDone() || !music.isDone()) {
        if (voice.isChunkFull() && music.isChunkFull()) {
            microphone.rotate();
            system.rotate();
            QFile::remove(system.chunkURLs().back());
            voice.allowNext();
            music.allowNext();
        }
        if (voice.seconds() * 4 >= static_cast<double>(seconds * (static_cast<std::int64_t>(quarters.size()) + 1))) {
            quarters.push_back(present());
            std::printf("%5.2f h: %.1f MiB, %lld open files\n", voice.seconds() / 3600, quarters.back().mebibytes,
                        static_cast<long long>(quarters.back().files));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    voiceThread.join();
    musicThread.join();
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
    const Use last = present();
    const TrackHealth voiceHealth = microphone.monitor().read();
    const TrackHealth musicHealth = system.monitor().read();
    microphone.stop();
    system.stop();
    if (quarters.empty())
        return 1;
    const double grown = last.mebibytes - quarters.front().mebibytes;
    const std::int64_t opened = last.files - quarters.front().files;
    std::printf("From the first quarter to the end: %+.1f MiB (limit %.0f), %+lld open files (limit %lld), in %.1f s\n",
                grown, limitMebibytes, static_cast<long long>(opened), static_cast<long long>(limitFiles), took);
    const bool isAll = isWhole("Microphone", voiceHealth, voice) && isWhole("System audio", musicHealth, music);
    return isAll && grown <= limitMebibytes && opened <= limitFiles ? 0 : 1;
}
