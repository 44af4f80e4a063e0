// A machine that never sleeps, or that asks nobody before it does.
#pragma once

#include "CorvaneCore/Interfaces/PowerManagement.h"

namespace corvane {

class NullPowerManagement final : public PowerManagement {
public:
    void keepAwake(const QString&) override {}
    void release() override {}
};

} // namespace corvane
