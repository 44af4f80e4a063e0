// Waiting for a condition in tests, with a limit that only a fault reaches.
#pragma once

#include <chrono>
#include <thread>

namespace corvane {

template<typename Condition>
[[nodiscard]] bool waitFor(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace corvane
