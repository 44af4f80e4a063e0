// What does finishing a recording cost? An hour of the microphone (44.1 kHz, mono, 16 bit) is mixed with an hour of
// system audio (48 kHz, stereo, float). The peers are the bare copying of the same bytes in and out, ffmpeg and sox.
// Forty chunks of 90 s are joined; the peer is cat. All that is written is flushed to the disk, by the peers too.
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

using namespace corvane;

namespace {

constexpr int seconds = 3600;
constexpr AudioFormat microphoneFormat{.sampleRate = 44'100, .channels = 1, .sample = AudioFormat::Sample::signed16};
constexpr AudioFormat systemFormat{.sampleRate = 48'000, .channels = 2, .sample = AudioFormat::Sample::float32};
constexpr std::size_t blockBytes = 1024 * 1024;

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

template<typename Work>
Cost medianCost(Work work) {
    std::vector<Cost> costs{costOf(work), costOf(work), costOf(work)};
    std::ranges::sort(costs, {}, &Cost::milliseconds);
    return costs[1];
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
    const Cost copy = medianCost([&] { copyBytes({microphone, system}, peer, mixedBytes); });
    const Cost ours = medianCost([&] {
        SndfileAudioFiles files;
        AudioFileMixer::mix(files, microphone, system, mix);
    });
    require(SndfileAudioFiles().open(mix)->frameCount() == std::int64_t{seconds} * 48'000, "the mix");
    const Cost ffmpeg = costOfShell(
        QStringLiteral("ffmpeg -v error -y -i %1 -i %2 -filter_complex '[1:a]pan=mono|c0=0.5*c0+0.5*c1[s];"
                       "[0:a]aresample=48000[m];[m][s]amix=inputs=2:duration=longest:normalize=0,volume=0.9' "
                       "-c:a pcm_f32le %3 && sync -d %3")
            .arg(microphone, system, peer));
    const Cost sox = costOfShell(QStringLiteral("sox -V1 %1 -e floating-point -b 32 -r 48000 %4 && sox -V1 -m -v 1 %4 "
                                                "-v 1 %2 -e floating-point -b 32 -c 1 %3 vol 0.9 && sync -d %3")
                                     .arg(microphone, system, peer, converted));
    printFigure("AudioFileMixer::mix, an hour", ours.milliseconds, 1.5 * copy.milliseconds, "copying the bytes",
                copy.milliseconds);
    printFigure("  against a third of ffmpeg amix", ours.milliseconds, ffmpeg.milliseconds / 3, "ffmpeg",
                ffmpeg.milliseconds);
    printFigure("  against a third of sox -m", ours.milliseconds, sox.milliseconds / 3, "sox", sox.milliseconds);
    std::printf("  processor %.2f s | copying the bytes %.2f s, ffmpeg %.2f s, sox %.2f s\n", ours.processorSeconds,
                copy.processorSeconds, ffmpeg.processorSeconds, sox.processorSeconds);
    std::printf("  memory at the peak %.1f MB | limit 32 MB | ffmpeg %.1f MB, sox %.1f MB\n", ours.megabytes,
                ffmpeg.megabytes, sox.megabytes);
    for (const QString& file : {microphone, system, mix, peer, converted})
        QFile::remove(file);
}

void measureJoining(const QDir& directory) {
    std::vector<QString> chunks;
    for (int i = 0; i < 40; ++i) {
        chunks.push_back(chunkURL(directory.path(), i));
        makeNoise(chunks.back(), microphoneFormat, 90);
    }
    ::sync();
    const QString joined = directory.filePath(QStringLiteral("joined.wav"));
    const QString peer = directory.filePath(QStringLiteral("peer"));
    const Cost cat =
        costOfShell(QStringLiteral("rm -f %2; cat %1/0*.wav > %2 && sync -d %2").arg(directory.path(), peer));
    const Cost ours = medianCost([&] {
        SndfileAudioFiles files;
        AudioChunkConcatenator::concatenate(files, chunks, joined);
    });
    printFigure("AudioChunkConcatenator, 40 chunks of 90 s", ours.milliseconds, cat.milliseconds, "cat",
                cat.milliseconds);
    std::printf("  memory at the peak %.1f MB\n", ours.megabytes);
}

} // namespace

int main() {
    const QTemporaryDir directory;
    measureJoining(QDir(directory.path()));
    measureMixing(QDir(directory.path()));
    return 0;
}
