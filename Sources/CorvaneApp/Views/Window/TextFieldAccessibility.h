// A text field as assistive technology reads and fills it. Of a secret it gets no more than the screen shows: the dots.
// Owned by Qt's cache of accessible objects. Main thread.
#pragma once

#include "CorvaneApp/Views/Window/ControlAccessibility.h"

namespace corvane {

// From now on what is announced of a change in a secret has the dots too. The toolkit announces every letter typed.
void maskAnnouncedSecrets();

// Offsets are of UTF-16 units; the range from one up to another leaves out the second, which is -1 for the end.
class TextFieldAccessibility final : public ControlAccessibility,
                                     public QAccessibleTextInterface,
                                     public QAccessibleEditableTextInterface {
public:
    using ControlAccessibility::ControlAccessibility;
    using ControlAccessibility::text;

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override;

    [[nodiscard]] QString text(int start, int end) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] int selectionCount() const override;
    void selection(int index, int* start, int* end) const override;
    void setSelection(int index, int start, int end) override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int, int) override {} // follows the cursor by itself
    [[nodiscard]] QString attributes(int offset, int* start, int* end) const override;

    // As if the user had typed it.
    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

private:
    void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString shown() const;
    void select(int start, int end);
};

} // namespace corvane
