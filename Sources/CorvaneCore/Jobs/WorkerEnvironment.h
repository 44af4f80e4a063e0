// The environment variables that a processing run gets on top of the application's own. A value; `values` may block
// for as long as the token store takes, so it is called beside the main thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <memory>

namespace corvane {

class SecretStoring;

struct WorkerEnvironment {
    std::shared_ptr<SecretStoring> tokenStore;
    bool useOllama = false;

    // Does not fail: a token that cannot be read is a token that is not there, and no variable is set for it.
    [[nodiscard]] ProcessEnvironment values() const;
};

} // namespace corvane
