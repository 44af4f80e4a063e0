// How long one look at the desktop may take, and the one way to wait in it: other programs may hang, a look may not.
// Values, used on the thread that looks.
#pragma once

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace corvane {

class Deadline {
public:
    using Clock = std::chrono::steady_clock;

    // `cancelFd` becomes readable when nobody wants the answer any more; it must stay open while this is used.
    Deadline(Clock::time_point end, int cancelFd) : m_end(end), m_cancelFd(cancelFd) {}

    // The same, or earlier: `span` from now.
    [[nodiscard]] Deadline within(std::chrono::milliseconds span) const {
        return {std::min(m_end, Clock::now() + span), m_cancelFd};
    }

    // False if the time is over, or if nobody wants the answer, before `fd` is ready for `events` (as for poll).
    [[nodiscard]] bool awaitReady(int fd, short events) const {
        pollfd watched[] = {{.fd = fd, .events = events, .revents = 0},
                            {.fd = m_cancelFd, .events = POLLIN, .revents = 0}};
        int ready = 0;
        do
            ready = ::poll(watched, 2, millisecondsLeft());
        while (ready < 0 && errno == EINTR);
        return ready > 0 && watched[1].revents == 0;
    }

    [[nodiscard]] bool isOver() const {
        pollfd cancel{.fd = m_cancelFd, .events = POLLIN, .revents = 0};
        return Clock::now() >= m_end || ::poll(&cancel, 1, 0) > 0;
    }

private:
    [[nodiscard]] int millisecondsLeft() const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now());
        return std::max(0, static_cast<int>(left.count()));
    }

    Clock::time_point m_end;
    int m_cancelFd;
};

} // namespace corvane
