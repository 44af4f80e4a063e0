// Asks a language model what a meeting was about and who its speakers may be. One thread; the caller waits.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Language/LanguageModel.h"

#include <chrono>
#include <functional>

namespace corvane {

struct DescriptionLimits {
    int contextTokens = 8192;                  // of a question and its answer together
    std::chrono::milliseconds patience{45000}; // how long the model may read before its first word
};

// A meeting that does not fit into one question is read in parts, and the descriptions of the parts are described
// until one is left. `userContext` is what the user knows about the meeting and may be empty. `progress` gets the
// fraction of the questions that are answered. An answer of the wrong form is asked for a second time. Throws
// LanguageError; the transcript has speech.
[[nodiscard]] TranscriptLLMContext describeMeeting(const TranscriptResult& transcript, const QString& userContext,
                                                   LanguageModel& model, const DescriptionLimits& limits,
                                                   const std::function<void(double)>& progress);

} // namespace corvane
