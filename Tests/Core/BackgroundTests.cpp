#include "Support/MainLoop.h"

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Concurrency/Background.h"

#include <QThread>

#include <gtest/gtest.h>

#include <optional>

using namespace corvane;

TEST(Background, NothingComesBackBeforeTheMainLoopRuns) {
    QThreadPool pool;
    QObject context;
    std::optional<int> told;
    QThread* workedOn = nullptr;
    const auto future = inBackground(pool, [&workedOn] {
        workedOn = QThread::currentThread();
        return 7;
    });
    pool.waitForDone();
    EXPECT_FALSE(future.isFinished());
    auto continued = QFuture(future).then(&context, [&told](int result) { told = result; });
    EXPECT_FALSE(told);
    EXPECT_TRUE(loopUntil([&] { return continued.isFinished(); }));
    EXPECT_EQ(told, 7);
    EXPECT_NE(workedOn, QThread::currentThread());
}

TEST(Background, WhoIsGoneIsNotTold) {
    QThreadPool pool;
    auto context = std::make_unique<QObject>();
    bool wasTold = false;
    auto continued = inBackground(pool, [] {}).then(context.get(), [&wasTold] { wasTold = true; });
    pool.waitForDone();
    context.reset();
    EXPECT_TRUE(loopUntil([&] { return continued.isFinished(); }));
    EXPECT_FALSE(wasTold);
}

TEST(Background, AnExceptionAndACancellationComeBackToo) {
    const auto failing = inBackground([]() -> int { throw Error(QStringLiteral("no")); });
    EXPECT_THROW((void)loopedResult(failing), Error);

    auto promise = std::make_unique<QPromise<int>>();
    promise->start();
    const auto future = finishedByMainLoop(promise->future());
    promise.reset();
    EXPECT_TRUE(loopUntil([&] { return future.isFinished(); }));
    EXPECT_TRUE(future.isCanceled());
}
