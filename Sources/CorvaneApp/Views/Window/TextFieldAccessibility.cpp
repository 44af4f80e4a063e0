#include "CorvaneApp/Views/Window/TextFieldAccessibility.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace corvane {

namespace {

bool isSecret(const QQuickItem& field) {
    return field.property("isSecret").toBool();
}

bool canEdit(const QQuickItem& field) {
    return field.isEnabled() && !field.property("readOnly").toBool();
}

QString dots(qsizetype count) {
    return QString(count, QChar(0x2022));
}

void announce(QAccessibleEvent* event);

void announceMasked(QObject* field, QAccessibleEvent* event) {
    if (event->type() == QAccessible::TextInserted) {
        auto* change = static_cast<QAccessibleTextInsertEvent*>(event);
        QAccessibleTextInsertEvent masked(field, change->changePosition(), dots(change->textInserted().size()));
        announce(&masked);
    } else if (event->type() == QAccessible::TextRemoved) {
        auto* change = static_cast<QAccessibleTextRemoveEvent*>(event);
        QAccessibleTextRemoveEvent masked(field, change->changePosition(), dots(change->textRemoved().size()));
        announce(&masked);
    } else if (event->type() == QAccessible::TextUpdated) {
        auto* change = static_cast<QAccessibleTextUpdateEvent*>(event);
        QAccessibleTextUpdateEvent masked(field, change->changePosition(), dots(change->textRemoved().size()),
                                          dots(change->textInserted().size()));
        announce(&masked);
    } else if (event->type() != QAccessible::ValueChanged) {
        announce(event);
    }
}

void takeAnnouncement(QAccessibleEvent* event) {
    QObject* object = event->object();
    if (QAccessibleInterface* source = object ? nullptr : event->accessibleInterface())
        object = source->object();
    const auto* item = qobject_cast<QQuickItem*>(object);
    if (item && isSecret(*item))
        announceMasked(object, event);
    else
        announce(event);
}

// As the toolkit does it where nobody has put himself in between.
void announce(QAccessibleEvent* event) {
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(takeAnnouncement);
}

} // namespace

void maskAnnouncedSecrets() {
    QAccessible::installUpdateHandler(takeAnnouncement);
}

void* TextFieldAccessibility::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface && canEdit(item()))
        return static_cast<QAccessibleEditableTextInterface*>(this);
    return ControlAccessibility::interface_cast(type);
}

QAccessible::State TextFieldAccessibility::state() const {
    QAccessible::State state = ControlAccessibility::state();
    state.editable = canEdit(item());
    state.readOnly = !canEdit(item());
    state.selectableText = !isSecret(item());
    state.passwordEdit = isSecret(item());
    return state;
}

QString TextFieldAccessibility::shown() const {
    const QString typed = item().property("text").toString();
    return isSecret(item()) ? dots(typed.size()) : typed;
}

QString TextFieldAccessibility::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return shown();
    // Of a secret the attached properties keep the name to themselves, and have it as the description.
    if (kind == QAccessible::Name)
        return item().property("spokenName").toString();
    const QString words = ControlAccessibility::text(kind);
    return words == text(QAccessible::Name) ? QString() : words;
}

void TextFieldAccessibility::setText(QAccessible::Text kind, const QString& text) {
    if (kind == QAccessible::Value)
        replaceText(0, -1, text);
}

QString TextFieldAccessibility::text(int start, int end) const {
    const QString all = shown();
    return all.mid(start, (end < 0 ? static_cast<int>(all.size()) : end) - start);
}

int TextFieldAccessibility::characterCount() const {
    return static_cast<int>(shown().size());
}

int TextFieldAccessibility::cursorPosition() const {
    return item().property("cursorPosition").toInt();
}

void TextFieldAccessibility::setCursorPosition(int position) {
    item().setProperty("cursorPosition", position);
}

int TextFieldAccessibility::selectionCount() const {
    return item().property("selectionStart") == item().property("selectionEnd") ? 0 : 1;
}

void TextFieldAccessibility::selection(int index, int* start, int* end) const {
    const bool isThere = index == 0 && selectionCount() == 1;
    *start = isThere ? item().property("selectionStart").toInt() : 0;
    *end = isThere ? item().property("selectionEnd").toInt() : 0;
}

void TextFieldAccessibility::select(int start, int end) {
    QMetaObject::invokeMethod(&item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

void TextFieldAccessibility::setSelection(int index, int start, int end) {
    if (index == 0)
        select(start, end);
}

void TextFieldAccessibility::addSelection(int start, int end) {
    select(start, end);
}

void TextFieldAccessibility::removeSelection(int index) {
    if (index == 0)
        QMetaObject::invokeMethod(&item(), "deselect");
}

QRect TextFieldAccessibility::characterRect(int offset) const {
    QRectF place;
    QMetaObject::invokeMethod(&item(), "positionToRectangle", Q_RETURN_ARG(QRectF, place), Q_ARG(int, offset));
    const QRect inWindow = item().mapRectToScene(place).toRect();
    return {item().window() ? item().window()->mapToGlobal(inWindow.topLeft()) : QPoint(), inWindow.size()};
}

int TextFieldAccessibility::offsetAtPoint(const QPoint& point) const {
    const QRect screen = rect();
    if (!screen.contains(point))
        return -1;
    int nearest = 0;
    for (int offset = 1; offset < characterCount(); ++offset) {
        if (characterRect(offset).left() <= point.x())
            nearest = offset;
    }
    return nearest;
}

QString TextFieldAccessibility::attributes(int, int* start, int* end) const {
    *start = 0;
    *end = characterCount();
    return {};
}

void TextFieldAccessibility::deleteText(int start, int end) {
    replaceText(start, end, QString());
}

void TextFieldAccessibility::insertText(int offset, const QString& text) {
    replaceText(offset, offset, text);
}

void TextFieldAccessibility::replaceText(int start, int end, const QString& text) {
    if (!canEdit(item()))
        return;
    QString whole = item().property("text").toString();
    const auto length = static_cast<int>(whole.size());
    const int from = std::clamp(start, 0, length);
    const int to = end < 0 ? length : std::clamp(end, from, length);
    whole.replace(from, to - from, text);
    item().setProperty("text", whole);
    setCursorPosition(from + static_cast<int>(text.size()));
    QMetaObject::invokeMethod(&item(), "textEdited");
}

} // namespace corvane
