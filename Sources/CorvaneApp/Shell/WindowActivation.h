// Passes on what the desktop gave to a process that was started by the user, so that a window of this process may come
// to the front: desktops refuse that to a window that nobody asked for. Main thread.
#pragma once

#include "CorvaneCore/Services/StartRequest.h"

class QWindow;

namespace corvane {

// Before the window is shown.
void prepareActivation(const StartRequest& request);
// After it was shown.
void completeActivation(QWindow& window, const StartRequest& request);

} // namespace corvane
