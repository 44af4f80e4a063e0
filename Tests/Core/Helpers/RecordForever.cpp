// Records counted samples in chunks of 50 ms through a recorder, with pauses, and meanwhile joins what an earlier
// recording left over and over, until it is killed: RecordForever CHUNKS EARLIER-CHUNKS OUTPUT. Standard output tells
// how many frames were surely written.
#include "Support/Fakes/FakeAudioInputs.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"
#include "CorvaneCore/Recording/Finalization.h"
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>
#include <thread>

using namespace corvane;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 4)
        return 2;
    const auto files = std::make_shared<SndfileAudioFiles>();
    const auto device = std::make_shared<FakeAudioDevice>();
    device->format.sampleRate = 480'000; // so that kills find more than a few buffers
    ChunkedMicrophoneRecorder recorder(QString::fromLocal8Bit(argv[1]), 0, 0.05,
                                       std::make_unique<FakeAudioInput>(device), files,
                                       std::make_shared<SystemClock>());
    recorder.start();
    QTimer pauses;
    QObject::connect(&pauses, &QTimer::timeout, [&] {
        recorder.pause();
        recorder.resume();
    });
    pauses.start(70);
    const std::jthread capture([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            device->deliverCounted(480);
            std::printf("%d\n", device->counted());
            std::fflush(stdout);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    const std::jthread finishing([&](const std::stop_token& stop) {
        const QDir earlier(QString::fromLocal8Bit(argv[2]));
        FinalizationPlan plan{
            .meetingID = u"EARLIER"_s, .chunks = {}, .systemChunks = {}, .output = QString::fromLocal8Bit(argv[3])};
        for (const QString& name : earlier.entryList({u"*.wav"_s}, QDir::Files))
            plan.chunks.push_back(earlier.filePath(name));
        plan.systemChunks = plan.chunks;
        while (!stop.stop_requested() && !plan.chunks.empty())
            finalizeChunks(*files, plan);
    });
    return QCoreApplication::exec();
}
