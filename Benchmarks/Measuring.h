// What the benchmarks share: a stopwatch, a median, and one form of line for a figure beside its limit and its peer.
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace corvane {

template<typename Work>
[[nodiscard]] double milliseconds(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The median of an odd number of repetitions.
template<typename Work>
[[nodiscard]] double medianMilliseconds(int repetitions, Work work) {
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i)
        times.push_back(milliseconds(work));
    std::nth_element(times.begin(), times.begin() + repetitions / 2, times.end());
    return times[static_cast<std::size_t>(repetitions / 2)];
}

// What this process has used of the processor so far, in all of its threads.
[[nodiscard]] inline double processorMilliseconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto in = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return in(usage.ru_utime) + in(usage.ru_stime);
}

// `ratio` against the limit above 1 means too slow; against the peer it tells how much work there is on top of it.
inline void printFigure(const char* what, double value, double limit, const char* peer, double peerValue) {
    std::printf("%-46s %8.2f ms | limit %6.0f ms, ratio %.2f | %s %.2f ms, ratio %.1f\n", what, value, limit,
                value / limit, peer, peerValue, value / peerValue);
    std::fflush(stdout);
}

} // namespace corvane
