// When the user is asked whether to record a call, and what follows from the answer.
#include "App/AppModelTest.h"
#include "Support/Fakes/FakeCallNotices.h"
#include "Support/Fakes/FakeFrontmostApplicationReader.h"

#include "CorvaneApp/Model/CallDetectionController.h"

namespace corvane {
namespace {

class CallDetectionTest : public testing::Test {
protected:
    CallDetectionTest() {
        reader->front = inFront(u"us.zoom.xos"_s, u"Zoom"_s);
        QObject::connect(&*controller, &CallDetectionController::recordWanted,
                         [this](const QString& title) { wanted.append(title); });
    }
    // Until the answer to it has been taken.
    void poll() {
        controller->poll();
        settle();
    }
    static void settle() {
        bool done = false;
        QMetaObject::invokeMethod(
            qApp, [&done] { done = true; }, Qt::QueuedConnection);
        EXPECT_TRUE(loopUntil([&done] { return done; }));
    }
    [[nodiscard]] std::size_t prompts() const { return notices->shown.size(); }

    std::shared_ptr<FakeFrontmostApplicationReader> reader = std::make_shared<FakeFrontmostApplicationReader>();
    std::shared_ptr<FakeCallNotices> notices = std::make_shared<FakeCallNotices>();
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    bool canRecord = true;
    QStringList wanted;
    std::optional<CallDetectionController> controller{
        std::in_place, CallDetectionController::Services{reader, notices, clock}, [this] { return canRecord; },
        std::chrono::milliseconds(std::chrono::hours(1))};
};

TEST_F(CallDetectionTest, AsksAtOnceInTheWordsOfTheQuestionAndOnlyOnce) {
    controller->start();
    settle();
    ASSERT_EQ(prompts(), 1U);
    const CallNoticeContent& content = notices->shown[0];
    EXPECT_EQ(content.title, u"Record this meeting?"_s);
    EXPECT_EQ(content.subtitle, u"Zoom detected in Zoom."_s);
    ASSERT_EQ(content.buttons.size(), 2U);
    EXPECT_EQ(content.buttons[0].title, u"Not now"_s);
    EXPECT_EQ(content.buttons[1].title, u"Record"_s);
    poll();
    EXPECT_EQ(prompts(), 1U);
    EXPECT_EQ(reader->reads, 1) << "nothing is looked at while a prompt is on screen";

    notices->answer(CallNoticeAnswer::notNow);
    EXPECT_FALSE(notices->isOnScreen());
    EXPECT_TRUE(loopUntil([&] { return reader->reads == 2; })) << "the timer goes on";
}

TEST_F(CallDetectionTest, ACallThatWasDeclinedStaysQuietForHalfAnHour) {
    poll();
    notices->answer(CallNoticeAnswer::closed);
    clock->advance(1799);
    poll();
    EXPECT_EQ(prompts(), 1U);
    reader->front->windowTitle = u"Another"_s;
    poll();
    EXPECT_EQ(prompts(), 2U) << "a call of another key";
    notices->answer(CallNoticeAnswer::notNow);
    reader->front->windowTitle.reset();
    clock->advance(1);
    poll();
    EXPECT_EQ(prompts(), 3U) << "the very second in which the half hour ends";
    EXPECT_THAT(wanted, testing::IsEmpty());
}

TEST_F(CallDetectionTest, AWishToRecordIsPassedOnAndSilencesNothing) {
    poll();
    notices->answer(CallNoticeAnswer::record);
    EXPECT_EQ(wanted, (QStringList{u"Zoom "_s + clock->now().toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s)}));
    EXPECT_FALSE(notices->isOnScreen());
    canRecord = false;
    poll();
    EXPECT_EQ(reader->reads, 1) << "nothing is looked at while a recording runs";
    canRecord = true;
    poll();
    EXPECT_EQ(prompts(), 2U);
}

TEST_F(CallDetectionTest, AnUnansweredQuestionCountsAsDeclinedOnlyIfItWasSeen) {
    for (const bool works : {false, true}) {
        notices->works = works;
        controller.emplace(
            CallDetectionController::Services{reader, notices, clock}, [] { return true; },
            std::chrono::milliseconds(1));
        poll();
        EXPECT_TRUE(loopUntil([&] { return !notices->isOnScreen(); }));
        const auto readBefore = reader->reads;
        const int wishedBefore = notices->wishes;
        poll();
        EXPECT_EQ(reader->reads, readBefore + 1);
        EXPECT_EQ(notices->wishes, works ? wishedBefore : wishedBefore + 1);
    }
}

TEST_F(CallDetectionTest, AnswersOfTheDesktopThatComeLateOrNeverDoNoHarm) {
    reader->beSlow();
    controller->poll();
    controller->poll();
    EXPECT_EQ(reader->reads, 1) << "polls do not overlap";
    canRecord = false;
    reader->answer();
    settle();
    EXPECT_EQ(prompts(), 0U) << "a recording has begun";
    canRecord = true;
    poll();
    EXPECT_EQ(prompts(), 0U) << "the late answer is forgotten";
    reader->drop();
    settle();
    controller->poll();
    reader->answer();
    settle();
    EXPECT_EQ(prompts(), 1U) << "an answer that never came does not end the looking";
    controller.reset();
    EXPECT_FALSE(notices->isOnScreen());
}

class CallRecordingTest : public AppModelTest {};

TEST_F(CallRecordingTest, RecordsTheCallUnderItsName) {
    fixture.frontmostApplication->front = inFront(u"us.zoom.xos"_s, {}, u"Weekly Zoom Meeting"_s);
    AppModel& model = fixture.start();
    ASSERT_TRUE(ModelFixture::until([&] { return fixture.callNotices->isOnScreen(); }));
    fixture.callNotices->answer(CallNoticeAnswer::record);
    EXPECT_EQ(model.recording().recordingState().kind, RecordingState::Kind::recording);
    EXPECT_TRUE(model.detail().selectedTitle().startsWith(u"Weekly 2026-"_s));
}

} // namespace
} // namespace corvane
