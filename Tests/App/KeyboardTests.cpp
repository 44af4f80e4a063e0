#include "App/WindowTest.h"

#include "CorvaneApp/Views/KeyboardShortcuts.h"

#include <QKeySequence>
#include <QSet>

#include <iostream>

using namespace corvane;
using testing::Contains;
using testing::IsSupersetOf;

namespace {

class KeyboardTest : public WindowTest {
protected:
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

TEST_F(KeyboardTest, TabComesByEveryControlInTheOrderOfTheEye) {
    makeRun("2026-01-01T10-00-00", "Weekly", "meeting-1", 1'700'000'000);
    show();
    const QStringList road = tabRoad();
    for (const QString& one : road)
        std::cerr << one.toStdString() << "\n";
}
