#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneApp/Views/Window/ActiveScreen.h"
#include "CorvaneApp/Views/Window/CallNoticePanel.h"
#include "CorvaneApp/Views/Window/PanelCallNotices.h"
#include "CorvanePlatform/Null/FixedDesktopPreferences.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace corvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CallNoticePanelTest : public testing::Test {
protected:
    CallNoticePanelTest() {
        notice = notices.show(
            {.title = u"Record this meeting?"_s,
             .subtitle = u"Weekly"_s,
             .buttons = {{u"Not now"_s, CallNoticeAnswer::notNow}, {u"Record"_s, CallNoticeAnswer::record}}},
            [this](CallNoticeAnswer answer) {
                answers.push_back(answer);
                notice.reset();
            });
    }
    [[nodiscard]] CallNoticePanel& panel() const { return dynamic_cast<CallNoticePanel&>(*notice); }

    PanelCallNotices notices{std::make_shared<FixedDesktopPreferences>(ColorScheme::dark, true)};
    std::unique_ptr<CallNotice> notice;
    std::vector<CallNoticeAnswer> answers;
};

} // namespace

TEST(CallNoticePlacement, APanelOnlyWhereItLeavesTheKeyboardAlone) {
    EXPECT_EQ(callNoticeSurface(u"xcb"_s), CallNoticeSurface::panel);
    EXPECT_EQ(callNoticeSurface(u"wayland"_s), CallNoticeSurface::desktopNotification);
    EXPECT_EQ(callNoticeSurface(u"offscreen"_s), CallNoticeSurface::desktopNotification);
    EXPECT_EQ(callNoticeFrame(QRect(1920, 30, 1281, 900)), QRect(1920 + 400, 44, 480, 86));
}

TEST(CallNoticePlacement, OnTheScreenOfTheWindowInUseOrElseOnTheFirst) {
    const std::vector<QRect> screens{{1920, 0, 1920, 1080}, {0, 0, 1920, 1080}};
    EXPECT_EQ(screenShowing(QPoint(1920, 5), screens), 0U);
    EXPECT_EQ(screenShowing(QPoint(1919, 5), screens), 1U);
    EXPECT_EQ(screenShowing(QPoint(-1, 5), screens), 0U);
    EXPECT_EQ(screenShowing(std::nullopt, screens), 0U);
}

TEST_F(CallNoticePanelTest, StandsBelowTheTopWithoutTheKeyboardAndAnswersOnce) {
    ASSERT_TRUE(loopUntil([this] { return notice->wasShown(); }));
    QQuickWindow& window = *panel().window();
    EXPECT_EQ(window.geometry(), callNoticeFrame(window.screen()->availableGeometry()));
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(window.flags().testFlag(Qt::BypassWindowManagerHint));
    panel().answer(static_cast<int>(CallNoticeAnswer::record));
    panel().answer(static_cast<int>(CallNoticeAnswer::notNow));
    EXPECT_THAT(answers, IsEmpty()); // not from within the view
    ASSERT_TRUE(loopUntil([this] { return !notice; }));
    EXPECT_THAT(answers, ElementsAre(CallNoticeAnswer::record));
}

TEST_F(CallNoticePanelTest, ItsButtonsCanBeClicked) {
    ASSERT_TRUE(loopUntil([this] { return notice->wasShown(); }));
    QTest::mouseClick(panel().window(), Qt::LeftButton, {}, {420, 43}); // the right one
    ASSERT_TRUE(loopUntil([this] { return !notice; }));
    EXPECT_THAT(answers, ElementsAre(CallNoticeAnswer::record));
}

TEST_F(CallNoticePanelTest, ClosedByAnybodyElseItSaysSo) {
    panel().window()->close();
    ASSERT_TRUE(loopUntil([this] { return !notice; }));
    EXPECT_THAT(answers, ElementsAre(CallNoticeAnswer::closed));
}

TEST_F(CallNoticePanelTest, TakenAwayItAnswersNoMore) {
    panel().answer(static_cast<int>(CallNoticeAnswer::notNow));
    notice.reset();
    QCoreApplication::processEvents();
    EXPECT_THAT(answers, IsEmpty());
}
