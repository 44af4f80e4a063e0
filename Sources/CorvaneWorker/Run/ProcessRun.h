// `corvane-worker process`: a recording becomes a transcript. Called once, from the main thread.
#pragma once

#include "CorvaneWorker/Run/RunReporter.h"
#include "CorvaneWorker/Run/StageChoice.h"

namespace corvane {

// Returns the exit status: 0, or 1 after a failure that has been told in job_state.json, events.jsonl and on standard
// error. Ends the process with status 1 on SIGTERM and SIGINT.
int runProcess(const ProcessCommand& command);

using StageMaker = std::function<RunStages(const ProcessCommand&)>;

// The run itself, in a directory that exists: makes the stages, lets each do its work in turn and tells how it goes.
// Whatever a stage throws ends the run with a failure that names the stage. Returns the exit status.
int runStages(const ProcessCommand& command, RunReporter& reporter, const StageMaker& makeStages);

} // namespace corvane
