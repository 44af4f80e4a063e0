// A desktop that remembers what it was asked to open. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/Workspace.h"

#include <QStringList>

namespace corvane {

class FakeWorkspace final : public Workspace {
public:
    bool open(const QString& pathOrAddress) override {
        if (!works || pathOrAddress.isEmpty())
            return false;
        opened.append(pathOrAddress);
        return true;
    }

    bool works = true;
    QStringList opened;
};

} // namespace corvane
