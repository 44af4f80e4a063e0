// How far something has come, from 0 to 1.
import QtQuick
import QtQuick.Templates as T

T.ProgressBar {
    id: control

    property string accessibleName

    implicitHeight: 6
    implicitWidth: 200
    Accessible.role: Accessible.ProgressBar
    Accessible.name: accessibleName
    Accessible.description: qsTr("%1%").arg(Math.round(100 * visualPosition))

    contentItem: Item {
        Rectangle {
            x: control.mirrored ? parent.width - width : 0
            width: Math.max(height, control.position * parent.width)
            height: parent.height
            radius: height / 2
            color: Theme.accent
        }
    }
    background: Rectangle {
        radius: height / 2
        color: Theme.tint(Theme.secondary, Theme.hoverOpacity)
    }
}
