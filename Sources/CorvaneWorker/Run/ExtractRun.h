// `corvane-worker speaker-profiles extract`: one speaker's voice of a finished run as a vector. Called once, from the
// main thread.
#pragma once

#include "CorvaneWorker/CommandLine/CommandLine.h"

namespace corvane {

// Returns the exit status: 0, or 1 after one sentence on standard error; then no file is written. The application reads
// what is printed only after the exit, so nothing long is printed.
int runExtract(const ExtractCommand& command);

} // namespace corvane
