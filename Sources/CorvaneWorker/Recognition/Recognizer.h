// Recognises the regions of a recording with one recogniser per core. Owned by the processing run, which calls it from
// the main thread and waits.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Recognition/RecognitionEngine.h"

#include <functional>

namespace corvane {

// Gets the recognised fraction of the speech, 0.0 to 1.0, in growing order and from one thread at a time.
using RecognitionProgress = std::function<void(double)>;

// The words of all regions in the order of the regions, whatever the number of threads, each within the speech of its
// region and with its speaker. Throws WorkerError, the first one of any thread.
[[nodiscard]] std::vector<RecognizedWord> recognizeRegions(const SampleStore& samples,
                                                           std::span<const SpeechRegion> regions,
                                                           const RecognitionEngine& engine, unsigned threads,
                                                           const RecognitionProgress& progress);

} // namespace corvane
