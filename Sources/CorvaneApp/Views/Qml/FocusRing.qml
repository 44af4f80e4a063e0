// Shows which control the keyboard drives.
import QtQuick

Rectangle {
    required property var control

    anchors.fill: parent
    anchors.margins: -Theme.focusWidth - 1
    radius: Theme.smallRadius + Theme.focusWidth + 1
    color: "transparent"
    border.width: Theme.focusWidth
    border.color: Theme.accent
    visible: control.visualFocus === undefined ? control.activeFocus : control.visualFocus
}
