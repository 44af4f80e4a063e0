// Remembers whether the machine is kept awake. The test emits shuttingDown().
#pragma once

#include "CorvaneCore/Interfaces/PowerManagement.h"

#include <optional>

namespace corvane {

class FakePowerManagement final : public PowerManagement {
public:
    std::optional<QString> reason; // while it is kept awake

    void keepAwake(const QString& why) override { reason = why; }
    void release() override { reason.reset(); }
};

} // namespace corvane
