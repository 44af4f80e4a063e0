#include "CorvaneWorker/Run/SignalWatch.h"

namespace corvane {

namespace {

constexpr int stopWatching = SIGUSR1; // sent to the watching thread alone

} // namespace

SignalWatch::SignalWatch(std::function<void()> onSignal) : m_onSignal(std::move(onSignal)) {
    sigemptyset(&m_signals);
    for (const int signal : {SIGTERM, SIGINT, stopWatching})
        sigaddset(&m_signals, signal);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    m_thread = std::thread([this] { watch(); });
}

SignalWatch::~SignalWatch() {
    pthread_kill(m_thread.native_handle(), stopWatching);
    m_thread.join();
}

void SignalWatch::watch() {
    int signal = 0;
    while (sigwait(&m_signals, &signal) == 0 && signal != stopWatching)
        m_onSignal();
}

} // namespace corvane
