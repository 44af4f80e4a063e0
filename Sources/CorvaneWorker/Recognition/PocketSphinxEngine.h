// Recognises English with PocketSphinx and the model that Debian carries: what is left where no network is installed.
#pragma once

#include "CorvaneWorker/Recognition/RecognitionEngine.h"

namespace corvane {

// Throws WorkerError if the model is not installed.
[[nodiscard]] std::unique_ptr<RecognitionEngine> pocketSphinxEngine();

} // namespace corvane
