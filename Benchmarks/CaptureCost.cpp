// What does a recording cost while it runs? Microphone and system audio are captured from a private sound server and
// written to files, for a minute or for as many seconds as the first argument says; the second may be "pipewire". The
// peers are two `parec`, which do the
// same at the same time; the limit is one per cent of a core.
#include "Support/PrivateAudioServer.h"
#include "Support/Waiting.h"

#include "CorvanePlatform/Linux/Audio/PulseAudioInputs.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <signal.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

using namespace corvane;

namespace {

constexpr double limitPercent = 1;

double processorSeconds(int who) {
    rusage usage{};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class Recording {
public:
    Recording(std::unique_ptr<AudioInput> input, const QString& path)
        : m_input(std::move(input)), m_writer(SndfileAudioFiles().create(path, m_input->format())) {
        m_input->start(
            [this](const std::byte* frames, std::size_t count) {
                m_frames += m_writer->write(frames, count) ? count : 0;
                ++m_buffers;
            },
            {});
    }
    void end(const char* name, double seconds) {
        const AudioFormat format = m_input->format();
        m_input->stop();
        m_writer->close();
        std::printf("%s: %.2f s of sound in %.2f s, buffers of %zu frames\n", name,
                    static_cast<double>(m_frames) / format.sampleRate, seconds,
                    m_frames / std::max<std::size_t>(m_buffers, 1));
    }

private:
    std::unique_ptr<AudioInput> m_input;
    std::unique_ptr<AudioFileWriter> m_writer;
    std::size_t m_frames = 0;
    std::size_t m_buffers = 0;
};

std::shared_ptr<LaunchedProcess> peer(const char* source, const QString& path) {
    const QString command = QStringLiteral("exec parec --latency-msec=85 --fix-format --fix-rate --fix-channels "
                                           "--file-format=wav --device=\"$0\" \"$1\"");
    return LinuxProcessLauncher().launch({.executable = QStringLiteral("/bin/sh"),
                                          .arguments = {QStringLiteral("-c"), command, QString::fromUtf8(source), path},
                                          .environment = {},
                                          .standardOutput = QStringLiteral("/dev/null"),
                                          .standardError = QStringLiteral("/dev/null")},
                                         {});
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const QTemporaryDir directory;
    const auto at = [&directory](const char* name) { return directory.filePath(QString::fromUtf8(name)); };
    qputenv("HOME", directory.path().toUtf8()); // where libpulse leaves a file
    const bool isPipeWire = argc > 2 && std::string_view(argv[2]) == "pipewire";
    const PrivateAudioServer server(isPipeWire ? PrivateAudioServer::Kind::pipeWire
                                               : PrivateAudioServer::Kind::pulseAudio);
    const double childrenBefore = processorSeconds(RUSAGE_CHILDREN);
    const auto microphonePeer = peer("mic", at("mic-peer.wav"));
    const auto systemPeer = peer("speaker.monitor", at("system-peer.wav"));

    const double before = processorSeconds(RUSAGE_SELF);
    QElapsedTimer timer;
    timer.start();
    PulseAudioInputs inputs;
    Recording microphone(inputs.microphone(), at("mic.wav"));
    Recording system(inputs.systemAudio(), at("system.wav"));
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const double elapsed = static_cast<double>(timer.elapsed()) / 1000;
    microphone.end("Microphone", elapsed);
    system.end("System audio", elapsed);
    const double ours = 100 * (processorSeconds(RUSAGE_SELF) - before) / elapsed;

    for (const auto& process : {microphonePeer, systemPeer}) {
        ::kill(static_cast<pid_t>(process->processID()), SIGTERM);
        static_cast<void>(waitFor([&process] { return !process->isRunning(); }));
    }
    const double peers = 100 * (processorSeconds(RUSAGE_CHILDREN) - childrenBefore) / elapsed;
    std::printf("Both streams: %.2f %% of a core (limit %.0f %%), two parec %.2f %%, ratio %.2f\n", ours, limitPercent,
                peers, ours / peers);
    return ours < limitPercent ? 0 : 1;
}
