// The real main window over a model in a data directory of its own. Controls are found by what they are called, as a
// screen reader finds them.
#pragma once

#include "App/AppModelTest.h"

#include "CorvaneApp/Views/QuitController.h"
#include "CorvaneApp/Views/Window/DashboardWindowController.h"
#include "CorvanePlatform/Null/FixedDesktopPreferences.h"

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

namespace corvane {

class WindowTest : public AppModelTest {
protected:
    // The desktop asks for stillness: nothing is still on its way when a test looks.
    void show() {
        model = &fixture.start();
        quit = std::make_unique<QuitController>(*model);
        controller = std::make_unique<DashboardWindowController>(
            *model, *quit, fixture.clock, std::make_shared<FixedDesktopPreferences>(ColorScheme::light, true),
            data.paths.root + u"/window.ini"_s);
        ASSERT_TRUE(controller->show());
        ASSERT_TRUE(loopUntil([this] { return window().isExposed() && window().isActive(); }));
    }
    void TearDown() override {
        controller.reset();
        quit.reset();
    }

    [[nodiscard]] QQuickWindow& window() const { return *controller->window(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(&window(), key, modifiers);
    }
    [[nodiscard]] static QString nameOf(QObject* object) {
        QAccessibleInterface* accessible = object ? QAccessible::queryAccessibleInterface(object) : nullptr;
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }
    // Of what has the keyboard.
    [[nodiscard]] QString focused() const { return nameOf(window().activeFocusItem()); }
    // The visible control of that name; waits until there is one.
    [[nodiscard]] QQuickItem* find(const QString& name) const {
        QQuickItem* found = nullptr;
        EXPECT_TRUE(loopUntil([&] {
            found = findIn(*window().contentItem(), name);
            return found != nullptr;
        })) << name.toStdString();
        return found;
    }
    [[nodiscard]] bool has(const QString& name) const { return findIn(*window().contentItem(), name) != nullptr; }

    AppModel* model = nullptr;
    std::unique_ptr<QuitController> quit;
    std::unique_ptr<DashboardWindowController> controller;

private:
    static QQuickItem* findIn(const QQuickItem& parent, const QString& name) {
        for (QQuickItem* child : parent.childItems()) {
            if (!child->isVisible())
                continue;
            if (nameOf(child) == name)
                return child;
            if (QQuickItem* found = findIn(*child, name))
                return found;
        }
        return nullptr;
    }
};

} // namespace corvane
