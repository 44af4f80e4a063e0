// What the session bus tells of the desktop: whether icons and notifications are shown, whether accessibility is on. No
// service is started by asking.
#pragma once

#include "CorvaneCore/Interfaces/MachineProbe.h"

#include <chrono>

namespace corvane {

// Blocks for the limit and half a second at most; any thread.
[[nodiscard]] SessionBusFacts probeSessionBus(std::chrono::milliseconds limit);

} // namespace corvane
