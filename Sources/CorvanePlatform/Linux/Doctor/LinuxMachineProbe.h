// What this machine and its desktop have. Holds nothing; any thread.
#pragma once

#include "CorvaneCore/Interfaces/MachineProbe.h"

namespace corvane {

class LinuxMachineProbe final : public MachineProbe {
public:
    [[nodiscard]] KeyringFacts keyring() override;
    [[nodiscard]] SessionBusFacts sessionBus() override;
    [[nodiscard]] WindowFacts windows() override;
    [[nodiscard]] StorageFacts storage(const QString& directory) override;
    [[nodiscard]] std::optional<QString> program(const QString& name) override;
};

} // namespace corvane
