// Recognises the regions of a recording with one decoder per core. Owned by the processing run, which calls it from the
// main thread and waits.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Speech/SpeechDecoder.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

namespace corvane {

// Gets the recognised fraction of the speech, 0.0 to 1.0, in growing order and from one thread at a time.
using RecognitionProgress = std::function<void(double)>;

// The words of all regions in the order of the regions, whatever the number of threads. Throws WorkerError, the first
// one of any thread.
[[nodiscard]] std::vector<RecognizedWord> recognizeRegions(const SampleStore& samples,
                                                           std::span<const SpeechRegion> regions,
                                                           const SpeechModel& model, unsigned threads,
                                                           const RecognitionProgress& progress);

} // namespace corvane
