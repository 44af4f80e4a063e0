// The ground of what lies over the window.
import QtQuick

Rectangle {
    color: Theme.surface
    radius: Theme.radius
    border.width: Theme.hair
    border.color: Theme.line

    Rectangle {
        z: -1
        anchors.fill: parent
        anchors.topMargin: 3
        anchors.margins: -2
        radius: parent.radius + 2
        color: Theme.shadow
    }
}
