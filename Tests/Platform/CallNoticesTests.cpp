// The notice over a real session bus, with a notification service of the test's own.
#include "Support/FakeNotificationService.h"
#include "Support/MainLoop.h"
#include "Support/PrivateSessionBus.h"

#include "CorvanePlatform/Linux/Desktop/DesktopCallNotices.h"

#include <QElapsedTimer>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <signal.h>

#include <optional>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CallNoticesTest : public testing::Test {
protected:
    void show(const QString& subtitle = u"Zoom - <b>R&D</b>"_s) {
        notice.reset();
        notice = notices->show(
            {.title = u"Record this meeting?"_s,
             .subtitle = subtitle,
             .buttons = {{u"Not now"_s, CallNoticeAnswer::notNow}, {u"Record"_s, CallNoticeAnswer::record}}},
            [this](CallNoticeAnswer answer) {
                answers.push_back(answer);
                notice.reset(); // as its owner does
            });
    }
    uint showUntilSeen() {
        show();
        EXPECT_TRUE(loopUntil([this] { return notice->wasShown(); }));
        return service->shown.back().id;
    }
    [[nodiscard]] bool answered(std::size_t count = 1) {
        return loopUntil([&] { return answers.size() >= count; });
    }

    PrivateSessionBus bus;
    std::optional<FakeNotificationService> service{std::in_place, bus.address()};
    std::optional<DesktopCallNotices> notices{std::in_place};
    std::unique_ptr<CallNotice> notice;
    std::vector<CallNoticeAnswer> answers;
};

TEST_F(CallNoticesTest, ShowsTheQuestionAndTellsTheAnswer) {
    ASSERT_TRUE(service->works());
    const uint first = showUntilSeen();
    const auto& shown = service->shown.back();
    EXPECT_EQ(shown.title, u"Record this meeting?"_s);
    EXPECT_EQ(shown.body, u"Zoom - &lt;b&gt;R&amp;D&lt;/b&gt;"_s);
    EXPECT_EQ(shown.actions, (QStringList{u"not-now"_s, u"Not now"_s, u"record"_s, u"Record"_s}));
    EXPECT_EQ(shown.expiryMilliseconds, 5000);
    EXPECT_EQ(shown.hints[u"urgency"_s].userType(), QMetaType::UChar);
    Q_EMIT service->ActionInvoked(first + 1, u"record"_s); // of another application
    Q_EMIT service->ActionInvoked(first, u"record"_s);
    Q_EMIT service->ActionInvoked(first, u"not-now"_s); // pressed in haste
    ASSERT_TRUE(answered());
    ASSERT_TRUE(loopUntil([&] { return !service->closed.empty(); })) << "some services leave it there";

    const uint second = showUntilSeen();
    EXPECT_EQ(service->shown.back().replaces, 0U);
    Q_EMIT service->ActionInvoked(second, u"not-now"_s);
    ASSERT_TRUE(answered(2));
    Q_EMIT service->ActionInvoked(showUntilSeen(), u"default"_s);
    ASSERT_TRUE(answered(3));
    Q_EMIT service->NotificationClosed(showUntilSeen(), 1);
    ASSERT_TRUE(answered(4));
    EXPECT_THAT(answers, ElementsAre(CallNoticeAnswer::record, CallNoticeAnswer::notNow, CallNoticeAnswer::closed,
                                     CallNoticeAnswer::closed));
}

TEST_F(CallNoticesTest, SendsOnlyWhatTheServiceUnderstands) {
    service->capabilities = {u"body"_s};
    showUntilSeen();
    EXPECT_THAT(service->shown.back().actions, IsEmpty());
    EXPECT_EQ(service->shown.back().body, u"Zoom - <b>R&D</b>"_s);
    show(u"Zoom -\x1b[31m a\n"_s + u"long title "_s.repeated(900));
    EXPECT_TRUE(loopUntil([this] { return notice->wasShown(); }));
    EXPECT_TRUE(service->shown.back().body.startsWith(u"Zoom - [31m a long title long"_s));
    EXPECT_LE(service->shown.back().body.size(), 121);
}

TEST_F(CallNoticesTest, TakesAwayWhatIsNoLongerWanted) {
    const uint id = showUntilSeen();
    service->confirmsClosing = false;
    notice.reset();
    ASSERT_TRUE(loopUntil([&] { return !service->closed.empty(); }));
    EXPECT_THAT(service->closed, ElementsAre(id));
    showUntilSeen();
    EXPECT_EQ(service->shown.back().replaces, id) << "one that is there still is not joined by another";

    // At the end of the program nobody runs a loop any more.
    notice.reset();
    notices.reset();
    EXPECT_TRUE(loopUntil([&] { return service->closed.size() >= 2; }));
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(CallNoticesTest, WaitsForASlowServiceBesideTheMainLoop) {
    service->isSlow = true;
    show();
    ASSERT_TRUE(loopUntil([&] { return !service->shown.empty(); }));
    EXPECT_FALSE(notice->wasShown());
    notice.reset();
    service->answerNotify();
    ASSERT_TRUE(loopUntil([&] { return !service->closed.empty(); })) << "put up when nobody wanted it any more";

    service->isSlow = true;
    show();
    ASSERT_TRUE(loopUntil([&] { return service->shown.size() == 2; }));
    show();
    EXPECT_EQ(service->shown.size(), 2U) << "it is not asked again while it owes an answer";
    service->answerNotify();
    ASSERT_TRUE(loopUntil([&] { return notice->wasShown(); }));
    EXPECT_EQ(service->shown.size(), 3U);
    EXPECT_EQ(service->shown[2].replaces, service->shown[1].id);
}

TEST_F(CallNoticesTest, GoesOnWhenTheServiceDiesAndComesBack) {
    showUntilSeen();
    service.reset();
    ASSERT_TRUE(answered());
    EXPECT_THAT(answers, ElementsAre(CallNoticeAnswer::closed));
    show();
    QElapsedTimer time;
    time.start();
    service.emplace(bus.address());
    // The first one may have found no service.
    ASSERT_TRUE(loopUntil([&] {
        if (!notice->wasShown() && time.elapsed() > 500) {
            time.restart();
            show();
        }
        return notice->wasShown();
    }));
    EXPECT_EQ(service->shown.back().replaces, 0U) << "the number belonged to the dead one";
}

TEST(CallNoticesWithoutABus, AreNotShownAndHoldNobodyUp) {
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    for (const char* address : {"unix:path=/nowhere/bus", "nonsense", "autolaunch:"}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        DesktopCallNotices notices;
        for (int i = 0; i < 2; ++i) {
            const auto notice = notices.show({}, [](CallNoticeAnswer) { ADD_FAILURE(); });
            QThreadPool::globalInstance()->waitForDone();
            QCoreApplication::processEvents();
            EXPECT_FALSE(notice->wasShown()) << address;
        }
    }
    {
        // A bus that accepts the connection and then says nothing.
        const PrivateSessionBus bus;
        ASSERT_EQ(::kill(static_cast<pid_t>(bus.processID()), SIGSTOP), 0);
        DesktopCallNotices notices;
        QElapsedTimer time;
        time.start();
        {
            const auto notice = notices.show({}, [](CallNoticeAnswer) { ADD_FAILURE(); });
        }
        EXPECT_LT(time.elapsed(), 1000);
        ASSERT_EQ(::kill(static_cast<pid_t>(bus.processID()), SIGCONT), 0);
        QThreadPool::globalInstance()->waitForDone();
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
}

} // namespace
} // namespace corvane
