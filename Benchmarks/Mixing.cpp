// What does finishing a recording cost? An hour of the microphone (44.1 kHz, mono, 16 bit) is mixed with an hour of
// system audio (48 kHz, stereo, float). The peers are the bare copying of the same bytes in and out, ffmpeg and sox.
// Forty chunks of 90 s are joined; the peer is cat. All that is written is flushed to the disk, by the peers too, and
// replaces the file of the run before. Ends with a failure when a limit is passed.
#include "Benchmarks/Measuring.h"

#include "CorvaneCore/Recording/AudioFileMixer.h"
#include "CorvaneCore/Recording/ChunkFile.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <utility>

using namespace corvane;

namespace {

constexpr int seconds = 3600;
constexpr AudioFormat microphoneFormat{.sampleRate = 44'100, .channels = 1, .sample = AudioFormat::Sample::signed16};
constexpr AudioFormat systemFormat{.sampleRate = 48'000, .channels = 2, .sample = AudioFormat::Sample::float32};
constexpr std::size_t blockBytes = 1024 * 1024;
constexpr int rounds = 5;
constexpr double mostMegabytes = 32;

bool everyLimitIsKept = true;

void require(bool done, const char* what) {
    if (!done) {
        std::perror(what);
        std::exit(1);
    }
}

struct Cost {
    double milliseconds = 0;
    double processorSeconds = 0; // of all threads; tells the work apart from a busy machine
    double megabytes = 0;        // resident at the peak
};

// `times` the peer is the limit.
void judge(const char* what, const Cost& ours, double times, const char* name, const Cost& peer) {
    const double limit = times * peer.milliseconds;
    printFigure(what, ours.milliseconds, limit, name, peer.milliseconds);
    everyLimitIsKept = everyLimitIsKept && ours.milliseconds <= limit;
}

void judgeMemory(const Cost& ours) {
    std::printf("  memory at the peak %.1f MB | limit %.0f MB\n", ours.megabytes, mostMegabytes);
    everyLimitIsKept = everyLimitIsKept && ours.megabytes < mostMegabytes;
}

// In a process of its own, so that its memory is its own too.
template<typename Work>
Cost costOf(Work work) {
    Cost cost;
    cost.milliseconds = milliseconds([&] {
        const pid_t child = ::fork();
        if (child == 0) {
            work();
            ::_exit(0);
        }
        int status = 0;
        rusage usage{};
        require(child > 0 && ::wait4(child, &status, 0, &usage) == child && status == 0, "a measured process");
        const auto secondsOf = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        cost.processorSeconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
        cost.megabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    });
    return cost;
}

Cost median(std::vector<Cost> costs) {
    std::ranges::sort(costs, {}, &Cost::milliseconds);
    return costs[costs.size() / 2];
}

// The medians of both, run by turns, so that a busy moment of the machine meets both.
template<typename Work, typename Peer>
std::pair<Cost, Cost> medianCosts(Work work, Peer peer) {
    std::vector<Cost> ours;
    std::vector<Cost> theirs;
    for (int round = 0; round < rounds; ++round) {
        theirs.push_back(peer());
        ours.push_back(costOf(work));
    }
    return {median(ours), median(theirs)};
}

Cost costOfShell(const QString& command) {
    return costOf([&] { require(std::system(command.toLocal8Bit().constData()) == 0, "a peer"); });
}

void makeNoise(const QString& path, const AudioFormat& format, int length) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> level(-0.5F, 0.5F);
    const std::size_t samples = static_cast<std::size_t>(format.sampleRate * format.channels) * 10;
    std::vector<float> floats(samples);
    std::vector<std::int16_t> integers(samples);
    for (std::size_t i = 0; i < samples; ++i) {
        floats[i] = level(random);
        integers[i] = static_cast<std::int16_t>(floats[i] * 32'767);
    }
    const bool isFloat = format.sample == AudioFormat::Sample::float32;
    const auto bytes = isFloat ? std::as_bytes(std::span(floats)) : std::as_bytes(std::span(integers));
    const auto writer = SndfileAudioFiles().create(path, format);
    for (int second = 0; second < length; second += 10)
        require(writer->write(bytes.data(), bytes.size() / format.bytesPerFrame()), "write");
    writer->close();
}

// Reads all of the inputs and writes so many bytes.
void copyBytes(const std::vector<QString>& inputs, const QString& output, std::int64_t bytes) {
    std::vector<char> block(blockBytes);
    for (const QString& input : inputs) {
        const int fd = ::open(QFile::encodeName(input).constData(), O_RDONLY | O_CLOEXEC);
        while (::read(fd, block.data(), block.size()) > 0) {
        }
        ::close(fd);
    }
    const int fd = ::open(QFile::encodeName(output).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    for (std::int64_t left = bytes; left > 0; left -= blockBytes)
        require(::write(fd, block.data(), std::min(block.size(), static_cast<std::size_t>(left))) > 0, "write");
    require(::fdatasync(fd) == 0, "flush");
    ::close(fd);
}

void measureMixing(const QDir& directory) {
    const QString microphone = directory.filePath(QStringLiteral("microphone.wav"));
    const QString system = directory.filePath(QStringLiteral("system.wav"));
    const QString mix = directory.filePath(QStringLiteral("mix.wav"));
    const QString peer = directory.filePath(QStringLiteral("peer.wav"));
    const QString converted = directory.filePath(QStringLiteral("converted.wav"));
    makeNoise(microphone, microphoneFormat, seconds);
    makeNoise(system, systemFormat, seconds);
    ::sync();
    constexpr std::int64_t mixedBytes = std::int64_t{seconds} * 48'000 * 4;
    const auto [ours, copy] = medianCosts(
        [&] {
            SndfileAudioFiles files;
            AudioFileMixer::mix(files, microphone, system, mix);
        },
        [&] { return costOf([&] {
                  copyBytes({microphone, system}, peer, mixedBytes);
              }); });
    require(SndfileAudioFiles().open(mix)->frameCount() == std::int64_t{seconds} * 48'000, "the mix");
    const Cost ffmpeg = costOfShell(
        QStringLiteral("ffmpeg -v error -y -i %1 -i %2 -filter_complex '[1:a]pan=mono|c0=0.5*c0+0.5*c1[s];"
                       "[0:a]aresample=48000[m];[m][s]amix=inputs=2:duration=longest:normalize=0,volume=0.9' "
                       "-c:a pcm_f32le %3 && sync -d %3")
            .arg(microphone, system, peer));
    const Cost sox = costOfShell(QStringLiteral("sox -V1 %1 -e floating-point -b 32 -r 48000 %4 && sox -V1 -m -v 1 %4 "
                                                "-v 1 %2 -e floating-point -b 32 -c 1 %3 vol 0.9 && sync -d %3")
                                     .arg(microphone, system, peer, converted));
    judge("AudioFileMixer::mix, an hour", ours, 1.5, "copying the bytes", copy);
    judge("  against a third of ffmpeg amix", ours, 1.0 / 3, "ffmpeg", ffmpeg);
    judge("  against a third of sox -m", ours, 1.0 / 3, "sox", sox);
    std::printf("  takes %.2f of copying the bytes, 1/%.1f of ffmpeg, 1/%.1f of sox\n",
                ours.milliseconds / copy.milliseconds, ffmpeg.milliseconds / ours.milliseconds,
                sox.milliseconds / ours.milliseconds);
    std::printf("  processor %.2f s | copying the bytes %.2f s, ffmpeg %.2f s, sox %.2f s\n", ours.processorSeconds,
                copy.processorSeconds, ffmpeg.processorSeconds, sox.processorSeconds);
    judgeMemory(ours);
    for (const QString& file : {microphone, system, mix, peer, converted})
        QFile::remove(file);
}

void measureJoining(const QDir& directory, const char* what, const AudioFormat& format) {
    std::vector<QString> chunks;
    for (int i = 0; i < 40; ++i) {
        chunks.push_back(chunkURL(directory.path(), i));
        makeNoise(chunks.back(), format, 90);
    }
    ::sync();
    const QString joined = directory.filePath(QStringLiteral("joined.wav"));
    const QString peer = directory.filePath(QStringLiteral("peer"));
    const auto [ours, cat] = medianCosts(
        [&] {
            SndfileAudioFiles files;
            AudioChunkConcatenator::concatenate(files, chunks, joined);
        },
        [&] { return costOfShell(QStringLiteral("cat %1/0*.wav > %2 && sync -d %2").arg(directory.path(), peer)); });
    judge(what, ours, 1, "cat", cat);
    judgeMemory(ours);
    for (const QString& file : {joined, peer})
        QFile::remove(file);
}

} // namespace

int main() {
    const QTemporaryDir directory;
    measureJoining(QDir(directory.path()), "Joining 40 chunks of 90 s, microphone", microphoneFormat);
    measureJoining(QDir(directory.path()), "Joining 40 chunks of 90 s, system audio", systemFormat);
    measureMixing(QDir(directory.path()));
    return everyLimitIsKept ? EXIT_SUCCESS : EXIT_FAILURE;
}
