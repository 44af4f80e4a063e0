// Waiting on the main loop of a test, with a limit that only a fault reaches.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFuture>

#include <stdexcept>

namespace corvane {

// Runs the main loop until the condition holds; false if it never did.
template<typename Condition>
[[nodiscard]] bool loopUntil(Condition condition) {
    QElapsedTimer watchdog;
    watchdog.start();
    while (!condition() && watchdog.elapsed() < 60'000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return condition();
}

template<typename T>
[[nodiscard]] T loopedResult(QFuture<T> future) {
    if (!loopUntil([&future] { return future.isFinished(); }))
        throw std::runtime_error("an operation did not end");
    return future.result();
}

} // namespace corvane
