// A small whole number with one button for less and one for more. The arrow keys step too.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: stepper

    required property string text
    required property int value
    required property int from
    required property int to
    signal stepped(int value)

    spacing: Theme.small

    function step(by) {
        // A stored value may lie beyond an end; it is never stepped the other way.
        const wanted = Math.max(stepper.from, Math.min(stepper.to, stepper.value + by));
        if ((wanted - stepper.value) * by > 0)
            stepper.stepped(wanted);
    }

    Label {
        text: stepper.text
        Accessible.ignored: true
    }
    Rectangle {
        id: box

        implicitWidth: 2 * Theme.controlHeight + Theme.hair
        implicitHeight: Theme.controlHeight
        radius: Theme.smallRadius
        color: Theme.field
        border.width: Theme.hair
        border.color: Theme.line
        activeFocusOnTab: true

        Accessible.role: Accessible.SpinBox
        Accessible.name: stepper.text
        Accessible.focusable: true
        Accessible.onIncreaseAction: stepper.step(1)
        Accessible.onDecreaseAction: stepper.step(-1)
        Keys.onUpPressed: stepper.step(1)
        Keys.onDownPressed: stepper.step(-1)
        Keys.onRightPressed: stepper.step(box.LayoutMirroring.enabled ? -1 : 1)
        Keys.onLeftPressed: stepper.step(box.LayoutMirroring.enabled ? 1 : -1)

        Row {
            anchors.fill: parent

            Repeater {
                model: [-1, 1]

                MouseArea {
                    id: half

                    required property int modelData
                    readonly property bool canStep: modelData < 0 ? stepper.value > stepper.from : stepper.value < stepper.to

                    width: box.width / 2
                    height: box.height
                    hoverEnabled: true
                    enabled: canStep
                    onClicked: stepper.step(modelData)
                    Accessible.role: Accessible.Button
                    Accessible.name: modelData < 0 ? qsTr("Fewer") : qsTr("More")
                    Accessible.onPressAction: stepper.step(modelData)

                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: 2
                        radius: Theme.smallRadius - 1
                        color: Theme.tint(Theme.secondary, half.containsMouse ? Theme.hoverOpacity : 0)
                    }
                    Symbol {
                        anchors.centerIn: parent
                        name: half.modelData < 0 ? "minus" : "plus"
                        size: Theme.bodySize
                        opacity: half.canStep ? 1 : Theme.disabledOpacity
                    }
                }
            }
        }
        FocusRing {
            control: box
        }
    }
}
