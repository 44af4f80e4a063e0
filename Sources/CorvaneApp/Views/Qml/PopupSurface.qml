// The ground of what lies over the window.
import QtQuick

Rectangle {
    id: ground

    color: Theme.surface
    radius: Theme.radius
    border.width: Theme.hair
    border.color: Theme.line

    // A soft shadow without an effect, which the software renderer would not draw.
    Repeater {
        model: 5

        Rectangle {
            required property int index
            readonly property int reach: 2 * index + 1

            z: -1
            anchors.fill: parent
            anchors.margins: -reach
            anchors.topMargin: 3 - reach
            anchors.bottomMargin: -3 - reach
            radius: ground.radius + reach
            color: Theme.shadow
        }
    }
}
