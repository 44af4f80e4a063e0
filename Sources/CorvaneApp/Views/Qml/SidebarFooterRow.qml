// A button of the sidebar that leads to a page.
import QtQuick
import QtQuick.Templates as T

T.AbstractButton {
    id: row

    required property var entry // SidebarFooterButton

    implicitHeight: Theme.controlHeight + Theme.tight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: entry.title
    Accessible.description: entry.badgeText
    Accessible.checkable: true
    Accessible.checked: entry.isSelected
    Accessible.onPressAction: row.clicked()
    Keys.onReturnPressed: row.clicked()
    Keys.onEnterPressed: row.clicked()

    contentItem: Item {
        Row {
            anchors.left: parent.left
            anchors.leftMargin: Theme.large
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.small

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: row.entry.iconName
                color: row.entry.isSelected ? Theme.accent : Theme.secondary
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: row.entry.title
                color: Theme.text
                font.pixelSize: Theme.bodySize
                font.weight: row.entry.isSelected ? Font.DemiBold : Font.Normal
                Accessible.ignored: true
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.entry.badgeText !== ""
                width: 8
                height: 8
                radius: 4
                color: Theme.accent
                Accessible.role: Accessible.StaticText
                Accessible.name: row.entry.badgeText
            }
        }
    }
    background: Rectangle {
        anchors.fill: parent
        anchors.leftMargin: Theme.small
        anchors.rightMargin: Theme.small
        radius: Theme.smallRadius
        color: row.entry.isSelected ? Theme.tint(Theme.accent, Theme.selectOpacity) : Theme.tint(Theme.secondary, row.hovered ? Theme.hoverOpacity : 0)

        FocusRing {
            control: row
            anchors.margins: -1
        }
    }
}
