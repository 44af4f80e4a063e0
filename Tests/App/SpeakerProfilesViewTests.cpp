#include "App/WindowTest.h"

#include "CorvaneCore/VoiceProfiles/LocalStore.h"

#include <QQuickItem>

using namespace corvane;
using testing::Lt;

namespace {

class SpeakerProfilesViewTest : public WindowTest {
protected:
    void showPeople(const QStringList& names) {
        show();
        for (const QString& name : names)
            model->voiceProfiles().speakerStore().createSpeakerProfile(name, u""_s);
        model->selectSidebarItem(SidebarItem::speakerProfiles());
    }
    [[nodiscard]] QStringList stored() const {
        QStringList names;
        for (const auto& summary : model->voiceProfiles().speakerStore().speakerProfiles())
            names.append(summary.profile.displayName);
        return names;
    }
    void type(const QString& field, const char* text) const {
        QQuickItem* item = find(field);
        ASSERT_NE(item, nullptr);
        item->forceActiveFocus(Qt::TabFocusReason);
        item->setProperty("text", QString());
        for (; *text; ++text)
            QTest::keyClick(&window(), *text);
    }
};

} // namespace

TEST_F(SpeakerProfilesViewTest, LeavingThePageSavesWhatIsTyped) {
    showPeople({u"Ada"_s, u"Bea"_s});
    type(u"Display name, Ada"_s, "Zoe");
    model->selectSidebarItem(SidebarItem::settings());
    EXPECT_THAT(stored(), testing::ElementsAre(u"Bea"_s, u"Zoe"_s));
    ASSERT_TRUE(loopUntil([this] { return !has(u"Display name, Bea"_s); }));
}

TEST_F(SpeakerProfilesViewTest, TypedTextSurvivesARefreshAndTheRowKeepsTheKeyboard) {
    showPeople({u"Ada"_s, u"Bea"_s});
    type(u"Display name, Ada"_s, "Half a na");
    model->createSpeakerProfile(u"Cyd"_s, {});
    ASSERT_NE(find(u"Display name, Cyd"_s), nullptr);
    QTest::keyClick(&window(), 'm');
    EXPECT_EQ(window().activeFocusItem()->property("text").toString(), u"Half a nam"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(stored().contains(u"Half a nam"_s));
}

TEST_F(SpeakerProfilesViewTest, OfManyPeopleOnlyThoseOnScreenAreMade) {
    QStringList names;
    for (int i = 0; i < 120; ++i)
        names.append(u"Person %1"_s.arg(i, 3, 10, QLatin1Char('0')));
    showPeople(names);
    auto* row = find(u"Person 000"_s);
    ASSERT_NE(row, nullptr);
    EXPECT_THAT(row->parentItem()->childItems().size(), Lt(40));
    find(u"Display name, Person 000"_s)->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 60; ++i)
        press(Qt::Key_Down);
    EXPECT_EQ(focused(), u"Display name, Person 060"_s);
    EXPECT_THAT(row->parentItem()->childItems().size(), Lt(60));
}

TEST_F(SpeakerProfilesViewTest, DeletingAsksFirstAndGivesTheKeyboardBack) {
    showPeople({u"Ada"_s, u"Bea"_s});
    find(u"Delete, Bea"_s)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Cancel"_s; }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Delete, Bea"_s; }));
    press(Qt::Key_Return);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Cancel"_s; }));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Delete"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Cancel"_s);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Return);
    EXPECT_THAT(stored(), testing::ElementsAre(u"Ada"_s));
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Display name, Ada"_s; })) << focused().toStdString();
}

TEST_F(SpeakerProfilesViewTest, AnotherOrderSavesWhatIsTypedAndTakesThePageNoHarm) {
    showPeople({u"Ada"_s, u"Bea"_s, u"Cyd"_s});
    type(u"Display name, Ada"_s, "Zoe");
    find(u"Sort"_s)->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Down);
    EXPECT_THAT(stored(), testing::ElementsAre(u"Bea"_s, u"Cyd"_s, u"Zoe"_s));
    for (const auto& name : {u"Bea"_s, u"Cyd"_s, u"Zoe"_s})
        EXPECT_TRUE(find(u"Display name, "_s + name)) << name.toStdString();
}
