// `corvane-worker speaker-context`: asks the language model about a finished run again, with what the user says about
// the meeting. Called once, from the main thread.
#pragma once

#include "CorvaneWorker/CommandLine/CommandLine.h"

namespace corvane {

// Returns the exit status: 0 after the block "llm" of result.json has been replaced, or 1 after one sentence on
// standard error, and then result.json is what it was.
int runContext(const ContextCommand& command);

} // namespace corvane
