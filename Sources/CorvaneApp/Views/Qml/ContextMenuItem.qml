import QtQuick
import QtQuick.Templates as T

T.MenuItem {
    id: item

    property string symbolName
    property bool isDestructive: false
    readonly property color tone: isDestructive ? Theme.negative : Theme.text

    implicitHeight: visible ? Theme.controlHeight : 0
    implicitWidth: row.implicitWidth + 2 * Theme.small
    leftPadding: Theme.small
    rightPadding: Theme.small
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: item.triggered()

    contentItem: Row {
        id: row

        spacing: Theme.small

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: item.symbolName !== ""
            name: item.symbolName
            color: item.tone
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.tone
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: item.highlighted ? Theme.tint(Theme.accent, Theme.hoverOpacity) : "transparent"
    }
}
