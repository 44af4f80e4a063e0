// The real platform, put together once for every program that is made of the model: the application and corvanectl.
// Cheap: nothing is read or written and no bus is asked before a service is used. Any thread.
#pragma once

#include "CorvaneApp/Model/AppServices.h"

namespace corvane {

[[nodiscard]] AppServices makeLinuxServices();

} // namespace corvane
