// A desktop that remembers what it was asked to open. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/Workspace.h"

#include <vector>

namespace corvane {

class FakeWorkspace final : public Workspace {
public:
    bool open(const QString& pathOrAddress) override {
        if (!works || pathOrAddress.isEmpty())
            return false;
        opened.push_back(pathOrAddress);
        return true;
    }

    bool works = true;
    std::vector<QString> opened;
};

} // namespace corvane
