// A number between two ends. The arrow keys move it by one step.
import QtQuick
import QtQuick.Templates as T

T.Slider {
    id: control

    property string accessibleName
    property string valueText

    implicitWidth: 220
    implicitHeight: Theme.controlHeight
    padding: knob.width / 2 - groove.implicitHeight
    snapMode: T.Slider.SnapAlways
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabledOpacity

    Accessible.role: Accessible.Slider
    Accessible.name: accessibleName
    Accessible.description: valueText
    Accessible.focusable: true
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    function step(direction) {
        const before = control.value;
        if (direction > 0)
            control.increase();
        else
            control.decrease();
        if (control.value !== before)
            control.moved();
    }

    background: Rectangle {
        id: groove

        x: control.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        width: control.availableWidth
        implicitHeight: Theme.tight
        height: implicitHeight
        radius: height / 2
        color: Theme.line

        Rectangle {
            x: control.mirrored ? parent.width - width : 0
            width: control.position * parent.width
            height: parent.height
            radius: parent.radius
            color: Theme.accent
        }
    }
    handle: Rectangle {
        id: knob

        x: control.leftPadding + control.visualPosition * (control.availableWidth - width)
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.symbolSize
        height: width
        radius: width / 2
        color: control.pressed ? Theme.accent : Theme.surface
        border.width: Theme.focusWidth
        border.color: control.hovered || control.pressed ? Theme.accent : Theme.controlLine

        FocusRing {
            control: control
            radius: height / 2
        }
    }
}
