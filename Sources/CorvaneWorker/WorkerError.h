// What ends a run: one sentence that a user understands. It becomes the message of job_state.json, the "error" of the
// "failed" event and the line on standard error. A plain value; any thread.
#pragma once

#include "CorvaneContract/Error.h"

namespace corvane {

class WorkerError : public Error {
public:
    using Error::Error;
};

} // namespace corvane
