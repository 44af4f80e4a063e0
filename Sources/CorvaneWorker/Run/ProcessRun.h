// `corvane-worker process`: a recording becomes a transcript. Called once, from the main thread.
#pragma once

#include "CorvaneWorker/CommandLine/CommandLine.h"

namespace corvane {

// Returns the exit status: 0, or 1 after a failure that has been told in job_state.json, events.jsonl and on standard
// error. Ends the process with status 1 on SIGTERM and SIGINT.
int runProcess(const ProcessCommand& command);

} // namespace corvane
