// No desktop: nothing can be opened. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/Workspace.h"

namespace corvane {

class NullWorkspace final : public Workspace {
public:
    bool open(const QString&) override { return false; }
};

} // namespace corvane
