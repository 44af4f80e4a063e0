// What turns sound into words. Built once per run on one thread; it then makes a recogniser for each thread that takes
// regions of the recording one by one.
#pragma once

#include "CorvaneWorker/Recognition/RecognizedWord.h"
#include "CorvaneWorker/Recognition/SpeechRegions.h"
#include "CorvaneWorker/Recognition/Spelling.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

// Used by one thread at a time.
class RegionRecognizer {
public:
    virtual ~RegionRecognizer() = default;

    // The words of the samples, 16 kHz mono, which begin at `startSeconds` of the recording. Silences and noises are
    // left out. The same samples always give the same words.
    [[nodiscard]] virtual std::vector<RecognizedWord> recognize(std::span<const std::int16_t> samples,
                                                                double startSeconds) = 0;
};

class RecognitionEngine {
public:
    virtual ~RecognitionEngine() = default;

    // For metadata: the program and the model.
    [[nodiscard]] virtual QString engineName() const = 0;
    [[nodiscard]] virtual QString modelName() const = 0;

    // How the recording is best cut for it.
    [[nodiscard]] virtual RegionLimits regionLimits() const { return {}; }

    [[nodiscard]] virtual Spelling spelling() const = 0;

    // What a user reads if the process dies inside of this engine.
    [[nodiscard]] virtual QString crashText() const = 0;

    // May be called on several threads at once. Throws WorkerError if the model does not load.
    [[nodiscard]] virtual std::unique_ptr<RegionRecognizer> recognizer() const = 0;
};

} // namespace corvane
