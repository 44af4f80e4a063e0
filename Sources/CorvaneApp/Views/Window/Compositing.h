// What the X server's screen can show.
#pragma once

namespace corvane {

// Whether something composes the windows of the screen: without that what is transparent in a window is drawn black.
// True on every other platform than X11. Main thread, after the application object.
[[nodiscard]] bool isComposited();

} // namespace corvane
