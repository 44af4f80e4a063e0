import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: control

    padding: 2
    implicitWidth: 10
    minimumSize: 0.06
    policy: T.ScrollBar.AsNeeded
    visible: size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: Theme.secondary
        opacity: control.pressed ? 0.7 : (control.hovered ? 0.5 : 0.3)
    }
}
