#include "App/WindowTest.h"

#include "CorvaneApp/Views/KeyboardShortcuts.h"
#include "CorvaneApp/Views/SidebarModel.h"

#include <QClipboard>
#include <QKeySequence>
#include <QSet>

using namespace corvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KeyboardTest : public WindowTest {
protected:
    void showMeetingOfTurns(int turns) {
        makeRun("run", "Weekly", "meeting-1", 1'700'000'000);
        TranscriptResult result;
        result.speakers = speakers;
        for (int i = 0; i < turns; ++i)
            result.segments.push_back({10.0 * i, 10.0 * i + 5, u"Turn %1"_s.arg(i), i % 2 ? u"B"_s : u"A"_s});
        data.write(u"run"_s, runFiles::result, encodeTranscriptResult(result));
        writeFileAtomically(data.recording(u"meeting-1.wav"_s), "sound");
        fixture.audioPlayers->durationSeconds = 1e6;
        show();
        ASSERT_TRUE(loopUntil([this] { return has(u"Copy transcript"_s); }));
    }
    void type(const char* text) const {
        for (; *text; ++text)
            QTest::keyClick(&window(), *text);
    }
    std::vector<TranscriptSpeaker> speakers;

    // What Tab comes by until it is back where it began.
    [[nodiscard]] QStringList tabRoad() const {
        QStringList road;
        const QQuickItem* first = nullptr;
        for (int i = 0; i < 100; ++i) {
            press(Qt::Key_Tab);
            if (!first)
                first = window().activeFocusItem();
            else if (window().activeFocusItem() == first)
                break;
            road.append(focused());
        }
        return road;
    }
};

} // namespace

TEST(KeyboardShortcuts, NoKeyHasTwoMeaningsAndEachIsAKey) {
    QSet<QKeySequence> known;
    for (const ShortcutSection& section : keyboardShortcuts()) {
        for (const KeyboardShortcut& shortcut : section.shortcuts) {
            for (const QString& key : shortcut.keys) {
                const QKeySequence sequence(key, QKeySequence::PortableText);
                EXPECT_EQ(sequence.toString(QKeySequence::PortableText), key);
                EXPECT_TRUE(shortcut.command == ShortcutCommand::none || !known.contains(sequence));
                if (shortcut.command != ShortcutCommand::none)
                    known.insert(sequence);
            }
        }
    }
}

TEST_F(KeyboardTest, TabComesByEveryControlInTheOrderOfTheEyeAndByOneTurn) {
    showMeetingOfTurns(40);
    const QStringList road = tabRoad();
    EXPECT_THAT(road, ElementsAre(u"Keyboard shortcuts"_s, u"Refresh meetings"_s, testing::_, u"Speaker Profiles"_s,
                                  u"Settings"_s, u"Meeting name"_s, u"Play Meeting"_s, u"Reprocess"_s, u"Open Files"_s,
                                  testing::_, u"Processing Details"_s, u"Copy transcript"_s, u"00:00:00, A: Turn 0"_s,
                                  u"New Recording"_s, u"Import"_s, u"Local Data"_s));
}

TEST_F(KeyboardTest, ArrowsGoFromTurnToTurnAndReturnPlays) {
    showMeetingOfTurns(300);
    find(u"Copy transcript"_s)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    for (int i = 0; i < 200; ++i)
        press(Qt::Key_Down);
    EXPECT_TRUE(focused().endsWith(u": Turn 200"_s)) << focused().toStdString();
    press(Qt::Key_Return);
    EXPECT_THAT(fixture.audioPlayers->heard, ElementsAre(u"play meeting-1.wav at 2000"_s));
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(u"Turn 200"_s));
}

TEST_F(KeyboardTest, TheMenuOfProfilesHasALineThatTheKeysPassBy) {
    speakers = {{.speaker = u"A"_s, .duration = 60, .examples = {}}};
    showMeetingOfTurns(2);
    model->createSpeakerProfile(u"Ada"_s, {});
    model->createSpeakerProfile(u"Bea"_s, {});
    find(u"Profiles"_s)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    QQuickItem* create = find(u"Create Profile From This Voice"_s);
    QQuickItem* ada = find(u"Ada"_s);
    ASSERT_TRUE(create && ada);
    const auto top = [](const QQuickItem& item) { return item.mapToScene({}).y(); };
    EXPECT_TRUE(loopUntil([&] { return top(*ada) > top(*create) + create->height(); })) << "room for the line";
    for (const auto& name : {u"Create Profile From This Voice"_s, u"Ada"_s, u"Bea"_s}) {
        press(Qt::Key_Down);
        EXPECT_EQ(focused(), name);
    }
}

TEST_F(KeyboardTest, ATranscriptThatComesLeavesTheKeyboardInTheTitle) {
    showMeetingOfTurns(3);
    find(u"Copy transcript"_s)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    press(Qt::Key_Down); // a turn is current
    press(Qt::Key_F2);
    EXPECT_EQ(focused(), u"Meeting name"_s);
    TranscriptResult other;
    other.segments.push_back({0, 1, u"New"_s, u"A"_s});
    model->detail().setTranscript(other, u"New"_s);
    ASSERT_NE(find(u"00:00:00, A: New"_s), nullptr);
    EXPECT_EQ(focused(), u"Meeting name"_s);
}

TEST_F(KeyboardTest, ShortcutsDoWhatTheirButtonsWouldDoAndNothingBehindAQuestion) {
    showMeetingOfTurns(1);
    press(Qt::Key_F1);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Close"_s; }));
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(model->recording().recordingState().isActive());
    press(Qt::Key_Tab); // goes nowhere else
    EXPECT_EQ(focused(), u"Close"_s);
    press(Qt::Key_Escape);
    ASSERT_TRUE(loopUntil([this] { return !has(u"Close"_s); }));
    press(Qt::Key_P, Qt::ControlModifier);
    press(Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(model->recording().recordingState().isActive());
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(model->recording().recordingState().kind, RecordingState::Kind::recording);
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(model->recording().recordingState().kind, RecordingState::Kind::paused);
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(model->recording().recordingState().kind, RecordingState::Kind::recording);
}

TEST_F(KeyboardTest, TheListOfMeetingsIsDrivenByKeys) {
    makeRun("a", "Older", "meeting-1", 1'600'000'000);
    makeRun("b", "Newer", "meeting-2", 1'700'000'000);
    show();
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::settings());
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::meeting(u"meeting-2"_s));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::meeting(u"meeting-1"_s));
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(loopUntil([this] { return has(u"Show in File Manager"_s); }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(loopUntil([this] { return focused().startsWith(u"Older"_s); })) << focused().toStdString();
    press(Qt::Key_F6);
    EXPECT_EQ(focused(), u"Meeting name"_s);
    press(Qt::Key_F6);
    press(Qt::Key_Delete);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Cancel"_s; }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(loopUntil([this] { return focused().startsWith(u"Older"_s); })) << focused().toStdString();
}

TEST_F(KeyboardTest, OnlyATypedTitleIsTakenAndItGoesToTheMeetingItWasTypedFor) {
    const QString draft = makeDraft("draft", "Talk", 1'700'000'000, "paused");
    makeRun("old", "Weekly", "meeting-1", 1'500'000'000);
    const QString run = makeRun("run", "Weekly", "meeting-1", 1'600'000'000);
    show();
    select(*model, "draft");
    press(Qt::Key_F2);
    ASSERT_EQ(focused(), u"Meeting name"_s);
    press(Qt::Key_F6);
    ASSERT_FALSE(model->detail().isEditingSelectedTitle());
    EXPECT_EQ(readMeetingDraft(draft)->recordingStatus, u"paused"_s) << "it can still be recovered";
    EXPECT_EQ(readMeetingDraft(draft)->chunks.size(), 1U);

    press(Qt::Key_F2);
    type("Plans");
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::settings());
    EXPECT_EQ(readMeetingDraft(draft)->title, u"Plans"_s);
    EXPECT_FALSE(QFile::exists(runFiles::in(draft, runAppMetadataFile)));

    select(*model, "meeting-1");
    press(Qt::Key_F2);
    type("Monday");
    select(*model, "draft"); // as a screen reader does it, which leaves the keyboard where it is
    EXPECT_EQ(readRunAppMetadata(run)->title, u"Monday"_s);
    EXPECT_EQ(readRunAppMetadata(data.run(u"old"_s))->title, u"Monday"_s);
    EXPECT_EQ(model->detail().selectedTitle(), u"Plans"_s);
    press(Qt::Key_F6);
    EXPECT_EQ(readMeetingDraft(draft)->title, u"Plans"_s);
}

TEST_F(KeyboardTest, AnAmpersandInALabelIsNoShortcut) {
    show();
    press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_NE(find(u"Stop & Process"_s), nullptr);
    press(Qt::Key_Space, Qt::AltModifier);
    EXPECT_FALSE(model->recording().finishingProgress());
    EXPECT_EQ(model->recording().recordingState().kind, RecordingState::Kind::recording);
}

TEST_F(KeyboardTest, TheWindowComesBackAsItIsAndShowsHowARecordingWillBeProcessed) {
    show();
    EXPECT_EQ(window().size(), QSize(900, 620));
    controller->show();
    EXPECT_EQ(window().windowState(), Qt::WindowNoState);
    window().showMaximized();
    controller->show();
    EXPECT_EQ(window().windowState(), Qt::WindowMaximized);

    press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(loopUntil([this] { return has(u"Detect speakers"_s); }));
    QMetaObject::invokeMethod(find(u"Processing, French · speaker detection on · auto"_s), "clicked");
    EXPECT_FALSE(has(u"Detect speakers"_s));
    model->selectSidebarItem(SidebarItem::settings());
    select(*model, model->recording().currentRecordingMeetingID()->toUtf8().constData());
    EXPECT_TRUE(has(u"Detect speakers"_s)) << "the user has come back to it";
}

TEST_F(KeyboardTest, TheMenuOfAMeetingSelectsNothingAndGoesWithEscape) {
    makeRun("a", "Older", "meeting-1", 1'600'000'000);
    makeRun("b", "Newer", "meeting-2", 1'700'000'000);
    show();
    const QQuickItem* row =
        find(u"Older, completed, "_s +
             stableRelativeTime(QDateTime::fromSecsSinceEpoch(1'600'000'000), fixture.clock->now()));
    ASSERT_NE(row, nullptr);
    QTest::mouseClick(&window(), Qt::RightButton, {}, row->mapToScene({20, 20}).toPoint());
    ASSERT_TRUE(loopUntil([this] { return has(u"Rename"_s); }));
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::meeting(u"meeting-2"_s));
    press(Qt::Key_Escape);
    ASSERT_TRUE(loopUntil([this] { return !has(u"Rename"_s); }));

    QTest::mouseClick(&window(), Qt::RightButton, {}, row->mapToScene({20, 20}).toPoint());
    ASSERT_NE(find(u"Rename"_s), nullptr);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_TRUE(loopUntil([this] { return focused() == u"Meeting name"_s; })) << focused().toStdString();
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::meeting(u"meeting-1"_s));
}

TEST_F(KeyboardTest, AMeetingIsShownFromItsTop) {
    makeDraft("draft", "Talk", 1'600'000'000);
    speakers = {{u"A"_s, 60, {}}, {u"B"_s, 60, {}}, {u"C"_s, 60, {}}};
    showMeetingOfTurns(40);
    select(*model, "draft");
    ASSERT_NE(find(u"No Transcript"_s), nullptr);
    window().grabWindow(); // laid out
    select(*model, "meeting-1");
    ASSERT_NE(find(u"Copy transcript"_s), nullptr);
    window().grabWindow();
    EXPECT_GT(find(u"Meeting name"_s)->mapToScene({0, 0}).y(), 0);
}

TEST_F(KeyboardTest, AnEmptyLibraryHasAWayToItsFirstRecording) {
    show();
    EXPECT_EQ(model->library().selectedSidebarItem(), SidebarItem::settings());
    EXPECT_FALSE(has(u"New Recording"_s));
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(has(u"New Recording"_s));
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_FALSE(has(u"New Recording"_s));
    const QQuickItem* way = find(u"Ready for a meeting"_s);
    ASSERT_NE(way, nullptr);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, way->mapToScene({20, 20}).toPoint());
    EXPECT_TRUE(has(u"New Recording"_s));
}

TEST_F(KeyboardTest, ATitleTooLongForItsFieldShowsItsBeginning) {
    const QString title = u"A long title "_s.repeated(12).trimmed();
    makeRun("run", title.toUtf8().constData(), "meeting-1", 1'700'000'000);
    show();
    const QQuickItem* field = find(u"Meeting name"_s);
    ASSERT_NE(field, nullptr);
    EXPECT_TRUE(field->property("isCut").toBool());
    press(Qt::Key_F2);
    EXPECT_FALSE(field->property("isCut").toBool()) << "what is typed is seen";
}
