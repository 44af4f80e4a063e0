// The stage before the last: a language model summarises the meeting and says who the speakers may be. The main thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Language/MeetingDescription.h"
#include "CorvaneWorker/Run/RunReporter.h"

#include <memory>
#include <optional>

namespace corvane {

struct LanguageChoice {
    std::unique_ptr<LanguageModel> model; // null if none is asked for
    DescriptionLimits limits;
    QString fault; // why what is asked for cannot be meant; as a LanguageError has it
};

// The description if there is a model and it gave one. Tells the stage and how it ended: an event "llm_completed",
// "llm_failed" or, also without speech, "llm_skipped". Never throws: a transcript is whole without.
[[nodiscard]] std::optional<TranscriptLLMContext> languageStep(const LanguageChoice& choice,
                                                               const TranscriptResult& transcript,
                                                               RunReporter& reporter, double progressBefore);

} // namespace corvane
