// Ends the process in order when it is asked to stop, at once and whatever stage it is in: a decoder cannot be
// interrupted in the middle of a region, so a thread of its own waits for SIGTERM and SIGINT.
#pragma once

#include <csignal>
#include <functional>
#include <thread>

namespace corvane {

class SignalWatch {
public:
    // Call on the main thread before any other thread exists: the signals are blocked here and in what it starts.
    // `onSignal` runs on the watching thread and is expected to end the process; if it returns, the watch goes on.
    explicit SignalWatch(std::function<void()> onSignal);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

private:
    void watch();

    std::function<void()> m_onSignal;
    sigset_t m_signals{};
    std::thread m_thread;
};

} // namespace corvane
