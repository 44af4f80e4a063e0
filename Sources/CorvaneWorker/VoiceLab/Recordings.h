// A recording as the voice code wants it: decoded, with its speech found. Used by the voice-lab; one thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"
#include "CorvaneWorker/Voice/VoiceModel.h"

#include <QString>
#include <QStringList>

namespace corvane {

struct Recording {
    SampleStore samples;
    std::vector<FrameRange> speech;

    explicit Recording(const QString& path); // throws WorkerError
};

// CORPUS/SPEAKER/*.wav
struct CorpusFile {
    QString speaker;
    QString path;
};
[[nodiscard]] std::vector<CorpusFile> corpusFiles(const QString& directory);

// Statistics of the windows of a file, not projected.
[[nodiscard]] WindowMatrix statisticsOfFile(const QString& path);

// What the voice network says of them. Throws WorkerError, also if the network is not installed.
[[nodiscard]] FrameMatrix networkWindowsOfFile(const QString& path, const WindowPlan& plan);

} // namespace corvane
