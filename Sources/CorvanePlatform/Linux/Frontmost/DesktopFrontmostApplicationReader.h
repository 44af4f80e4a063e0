// What is in front on a Linux desktop: under X11 and on sway of every application, on other Wayland compositors of
// those that are accessible. Made and used on the main thread, which needs its event loop for the answers; looks on a
// thread of its own, so that no program that hangs holds up the main loop.
#pragma once

#include "CorvaneCore/Interfaces/FrontmostApplication.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopLook.h"

#include <memory>

namespace corvane {

class DesktopFrontmostApplicationReader final : public FrontmostApplicationReader {
public:
    explicit DesktopFrontmostApplicationReader(DesktopSession session = DesktopSession::ofEnvironment());
    // Futures that have not finished by then are cancelled.
    ~DesktopFrontmostApplicationReader() override;

    // Finishes within 600 ms, with nothing if the answer is not there by then. Looks never overlap: who asks during one
    // is answered by the next.
    [[nodiscard]] QFuture<std::optional<FrontmostApplication>> read() override;

    // As of the last look.
    [[nodiscard]] const FrontmostStatus& status() const { return m_status; }

private:
    class Looker;

    FrontmostStatus m_status;
    std::unique_ptr<Looker> m_looker;
};

} // namespace corvane
