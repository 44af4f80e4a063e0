#include "CorvaneWorker/VoiceLab/Recordings.h"

#include "CorvaneWorker/Audio/AudioDecoder.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Speech/VoiceActivityNetwork.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>

namespace corvane {

Recording::Recording(const QString& path) : samples(QDir::tempPath()) {
    FrameLevels levels;
    const auto network = VoiceActivityNetwork::load();
    const auto sink = [&](std::span<const std::int16_t> block) {
        samples.append(block);
        levels.add(block);
        if (network)
            network->add(block);
    };
    (void)decodeAudio(path, sink, [](double) {});
    speech = findSpeech(levels.levels());
    if (network)
        speech = confirmedSpeech(speech, network->finish());
}

std::vector<CorpusFile> corpusFiles(const QString& directory) {
    std::vector<CorpusFile> files;
    const QDir corpus(directory);
    for (const QString& speaker : corpus.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QDir folder(corpus.filePath(speaker));
        for (const QString& name : folder.entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Name))
            files.push_back({speaker, folder.filePath(name)});
    }
    return files;
}

WindowMatrix statisticsOfFile(const QString& path) {
    const Recording recording(path);
    return measureWindows(recording.samples, recording.speech, [](double) {}).vectors;
}

FrameMatrix networkWindowsOfFile(const QString& path, const WindowPlan& plan) {
    const VoiceModel* model = installedVoiceModel().model.get();
    if (model == nullptr)
        throw WorkerError(installedVoiceModel().note);
    const Recording recording(path);
    return model->measure(recording.samples, recording.speech, placeWindows(recording.speech, plan), [](double) {});
}

} // namespace corvane
