// The last stage of a run: a language model summarises the meeting and says who the speakers may be. The main thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Run/RunReporter.h"

#include <optional>

namespace corvane {

// The description if the environment asks for one and the model gave it. Tells the stage and how it ended: an event
// "llm_completed", "llm_failed" or, also without speech, "llm_skipped". Never throws: a transcript is whole without.
[[nodiscard]] std::optional<TranscriptLLMContext> languageStep(const TranscriptResult& transcript,
                                                               RunReporter& reporter, double progressBefore);

} // namespace corvane
