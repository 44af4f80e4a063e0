// Two ways to do the same thing, timed in turns, so that a machine that slows down in between slows down both. For the
// programs in this directory; one thread.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace corvane::benchmarks {

struct Medians {
    double ours = 0; // milliseconds
    double peer = 0;
};

template<typename Ours, typename Peer>
[[nodiscard]] Medians compare(int rounds, Ours ours, Peer peer) {
    using Clock = std::chrono::steady_clock;
    const auto milliseconds = [](auto work) {
        const auto start = Clock::now();
        work();
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    };
    std::vector<double> oursTimes;
    std::vector<double> peerTimes;
    for (int round = 0; round < rounds; ++round) {
        oursTimes.push_back(milliseconds(ours));
        peerTimes.push_back(milliseconds(peer));
    }
    const auto median = [](std::vector<double>& times) {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    };
    return {.ours = median(oursTimes), .peer = median(peerTimes)};
}

inline void print(const char* question, const Medians& medians, const char* peer) {
    std::printf("%s: %.2f ms, %s %.2f ms, ratio %.2f\n", question, medians.ours, peer, medians.peer,
                medians.ours / medians.peer);
}

} // namespace corvane::benchmarks
