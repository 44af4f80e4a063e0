// Recognises speech with a neural network through the library of InferenceRuntime: the one that set-up fetches for
// English, or any that the user brings.
#pragma once

#include "CorvaneWorker/Recognition/RecognitionEngine.h"
#include "CorvaneWorker/Recognition/RecognitionModel.h"

namespace corvane {

struct InferenceRuntime;

// Loads the model, which takes up to some seconds; `language` as languageCode() gives it. All its recognisers share
// one model in memory. Throws WorkerError if the library refuses the model.
[[nodiscard]] std::unique_ptr<RecognitionEngine> networkEngine(const InferenceRuntime& runtime,
                                                               const RecognitionModel& model, const QString& language);

// Gives each word its share of the seconds [start, end) by the number of its letters: for networks that tell what was
// said but not when.
[[nodiscard]] std::vector<RecognizedWord> spreadWords(const QString& text, double start, double end);

// The text without what a network makes up when it loses the thread: a run of one to eight words said more than three
// times in a row is kept once.
[[nodiscard]] QString withoutLoops(const QString& text);

} // namespace corvane
