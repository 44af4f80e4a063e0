// What assistive technology is told of a control of the window. Of its own accord Qt 6.4 does not tell that a control
// is disabled nor what a field for a secret is called, and it gives the secret itself away. Owned by Qt's cache of
// accessible objects, which drops one when its item goes. Main thread.
#pragma once

#include <QAccessible>
#include <QAccessibleObject>
#include <QPointer>

class QQuickItem;

namespace corvane {

// From now on for every control: a button, switch, slider, choice or text field.
void installControlAccessibility();

class ControlAccessibility : public QAccessibleObject,
                             public QAccessibleActionInterface,
                             public QAccessibleValueInterface {
public:
    explicit ControlAccessibility(QQuickItem* item);

    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override; // of the screen
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;

    // What is drawn inside of a control is told by its name.
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    // A disabled control has no actions.
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

    // Of a slider.
    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    [[nodiscard]] QVariant maximumValue() const override;
    [[nodiscard]] QVariant minimumValue() const override;
    [[nodiscard]] QVariant minimumStepSize() const override;

protected:
    [[nodiscard]] QQuickItem& item() const;
    void* interface_cast(QAccessible::InterfaceType type) override;

private:
    [[nodiscard]] QVariant attached(const char* property) const;

    mutable QPointer<QObject> m_attached;
};

} // namespace corvane
