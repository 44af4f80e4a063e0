#include "CorvaneApp/Views/Window/ControlAccessibility.h"

#include "CorvaneApp/Views/Window/TextFieldAccessibility.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

// Qt has no public way to the attached properties but that they are a child of what they are attached to. A control has
// some of its own beside those of its view, which have the role.
QObject* accessibleProperties(const QObject& item) {
    const auto found = std::ranges::find_if(item.children(), [](const QObject* child) {
        return child->inherits("QQuickAccessibleAttached") && child->property("role").toInt() != QAccessible::NoRole;
    });
    return found == item.children().end() ? nullptr : *found;
}

QAccessibleInterface* makeControlAccessibility(const QString&, QObject* object) {
    auto* item = qobject_cast<QQuickItem*>(object);
    constexpr std::array controls{"QQuickAbstractButton", "QQuickComboBox", "QQuickSlider"};
    if (!item)
        return nullptr;
    if (item->inherits("QQuickTextField"))
        return new TextFieldAccessibility(item);
    if (std::ranges::any_of(controls, [item](const char* one) { return item->inherits(one); }))
        return new ControlAccessibility(item);
    return nullptr;
}

} // namespace

void installControlAccessibility() {
    QAccessible::installFactory(makeControlAccessibility);
    maskAnnouncedSecrets();
}

ControlAccessibility::ControlAccessibility(QQuickItem* item) : QAccessibleObject(item) {}

QQuickItem& ControlAccessibility::item() const {
    return *static_cast<QQuickItem*>(object());
}

QVariant ControlAccessibility::attached(const char* property) const {
    if (!m_attached) // a control is asked about itself before its view is complete
        m_attached = accessibleProperties(item());
    return m_attached ? m_attached->property(property) : QVariant();
}

void* ControlAccessibility::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface && role() == QAccessible::Slider)
        return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

QWindow* ControlAccessibility::window() const {
    return item().window();
}

QRect ControlAccessibility::rect() const {
    const QQuickItem& shown = item();
    if (!shown.window())
        return {};
    const QRect inWindow = shown.mapRectToScene(QRectF(0, 0, shown.width(), shown.height())).toRect();
    return {shown.window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

QAccessible::Role ControlAccessibility::role() const {
    return static_cast<QAccessible::Role>(attached("role").toInt());
}

QAccessible::State ControlAccessibility::state() const {
    const QQuickItem& shown = item();
    const QWindow* own = window();
    QAccessible::State state;
    state.disabled = !shown.isEnabled();
    state.focusable = shown.isEnabled();
    state.focused = shown.hasActiveFocus();
    state.invisible = !own || !own->isVisible() || !shown.isVisible() || shown.opacity() == 0;
    state.offscreen = !state.invisible && !QRect(own->mapToGlobal(QPoint()), own->size()).intersects(rect());
    state.checkable = attached("checkable").toBool();
    state.checked = attached("checked").toBool();
    state.selectable = attached("selectable").toBool();
    state.selected = attached("selected").toBool();
    state.hasPopup = role() == QAccessible::ButtonMenu || role() == QAccessible::ComboBox;
    return state;
}

QString ControlAccessibility::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Name)
        return attached("name").toString();
    const QString description = kind == QAccessible::Description ? attached("description").toString() : QString();
    return description == attached("name").toString() ? QString() : description; // nobody wants to hear it twice
}

// What holds a control is often there for the layout alone.
QAccessibleInterface* ControlAccessibility::parent() const {
    const QQuickWindow* own = item().window();
    for (QQuickItem* above = item().parentItem(); above; above = above->parentItem()) {
        if (own && above == own->contentItem())
            return QAccessible::queryAccessibleInterface(item().window());
        if (QAccessibleInterface* found = QAccessible::queryAccessibleInterface(above))
            return found;
    }
    return nullptr;
}

QStringList ControlAccessibility::actionNames() const {
    if (!item().isEnabled())
        return {};
    QStringList names{setFocusAction()};
    switch (role()) {
    case QAccessible::Slider:
        names = QStringList{increaseAction(), decreaseAction()} + names;
        break;
    case QAccessible::CheckBox:
        names = QStringList{toggleAction(), pressAction()} + names;
        break;
    case QAccessible::EditableText:
        break;
    default:
        names.prepend(pressAction());
    }
    return names;
}

void ControlAccessibility::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    const std::array<std::pair<QString, const char*>, 4> handlers{{{pressAction(), "pressAction"},
                                                                   {toggleAction(), "toggleAction"},
                                                                   {increaseAction(), "increaseAction"},
                                                                   {decreaseAction(), "decreaseAction"}}};
    if (name == setFocusAction())
        item().forceActiveFocus(Qt::OtherFocusReason);
    for (const auto& [action, handler] : handlers) {
        if (name == action)
            QMetaObject::invokeMethod(m_attached.data(), handler);
    }
}

QVariant ControlAccessibility::currentValue() const {
    return item().property("value");
}

void ControlAccessibility::setCurrentValue(const QVariant& value) {
    if (!item().isEnabled())
        return;
    item().setProperty("value", std::clamp(value.toDouble(), minimumValue().toDouble(), maximumValue().toDouble()));
    QMetaObject::invokeMethod(&item(), "moved"); // as if the user had done it
}

QVariant ControlAccessibility::maximumValue() const {
    return item().property("to");
}

QVariant ControlAccessibility::minimumValue() const {
    return item().property("from");
}

QVariant ControlAccessibility::minimumStepSize() const {
    return item().property("stepSize");
}

} // namespace corvane
