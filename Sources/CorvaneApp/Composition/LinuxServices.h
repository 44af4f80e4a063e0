// The real platform, put together once for every program that is made of the model: the application and corvanectl.
// Cheap: nothing is read or written and no bus is asked before a service is used. Main thread, before another runs.
#pragma once

#include "CorvaneApp/Model/AppServices.h"

namespace corvane {

// From here on files that this process and its workers make are the user's alone, whatever the umask was.
[[nodiscard]] AppServices makeLinuxServices();

} // namespace corvane
