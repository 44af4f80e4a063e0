// Work beside the main loop, whose results come back on it.
//
// A future of QtConcurrent::run() is finished by the thread that did the work. Asked for a continuation in that very
// moment, Qt 6.4 runs the continuation twice, the second time with a promise that is gone, and the program ends; and a
// context that goes away at that moment is called all the same. The futures from here are finished by the main loop:
// neither can happen.
#pragma once

#include <QCoreApplication>
#include <QException>
#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

namespace corvane {

// The same result or exception in a future that the main loop finishes; cancelled if the other one ends without any.
// Waiting for it without running the main loop is waiting for ever. Main thread.
template<typename Result>
[[nodiscard]] QFuture<Result> finishedByMainLoop(const QFuture<Result>& elsewhere) {
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    // With the application goes what nobody waits for any more.
    auto* watcher = new QFutureWatcher<Result>(QCoreApplication::instance());
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, promise] {
        watcher->deleteLater();
        QFuture<Result> found = watcher->future();
        try {
            found.waitForFinished(); // throws what the work threw
            if (found.isCanceled())
                return;
            if constexpr (!std::is_void_v<Result>)
                promise->addResult(found.takeResult());
        } catch (const QUnhandledException& wrapped) {
            promise->setException(wrapped.exception());
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    watcher->setFuture(elsewhere);
    return promise->future();
}

// Runs the work on a thread of the pool. Main thread.
template<typename Work>
[[nodiscard]] auto inBackground(QThreadPool& pool, Work work) {
    return finishedByMainLoop(QtConcurrent::run(&pool, std::move(work)));
}
template<typename Work>
[[nodiscard]] auto inBackground(Work work) {
    return inBackground(*QThreadPool::globalInstance(), std::move(work));
}

} // namespace corvane
