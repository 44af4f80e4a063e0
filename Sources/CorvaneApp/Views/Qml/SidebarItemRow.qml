// A meeting in the sidebar.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.ItemDelegate {
    id: row

    required property string meetingID
    required property string title
    required property string status
    required property string relativeTime
    required property bool isSelected
    required property int index
    signal picked
    signal menuWanted(point position)

    function select() {
        row.picked();
    }
    function openMenu() {
        row.menuWanted(row.mapToItem(null, row.width / 2, row.height / 2));
    }

    implicitHeight: column.implicitHeight + 2 * Theme.small
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    onClicked: {
        ListView.view.currentIndex = index;
        ListView.view.forceActiveFocus(Qt.MouseFocusReason);
        row.picked();
    }
    onPressAndHold: row.openMenu()

    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + status + ", " + relativeTime
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: row.picked()

    contentItem: Item {
        ColumnLayout {
            id: column

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: Theme.large
            anchors.rightMargin: Theme.medium
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Text {
                Layout.fillWidth: true
                text: row.title
                textFormat: Text.PlainText
                color: Theme.text
                font.pixelSize: Theme.bodySize
                font.weight: row.isSelected ? Font.DemiBold : Font.Medium
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }
            // Where there is no room for both, the status gives way.
            Row {
                id: line

                Layout.fillWidth: true
                spacing: Theme.tight

                Text {
                    width: Math.min(implicitWidth, line.width - time.width - line.spacing)
                    text: row.status
                    textFormat: Text.PlainText
                    color: time.color
                    font.pixelSize: Theme.captionSize
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Text {
                    id: time

                    text: "· " + row.relativeTime
                    color: row.isSelected ? Theme.selectedSecondary : Theme.secondary
                    font.pixelSize: Theme.captionSize
                    Accessible.ignored: true
                }
            }
        }
    }
    background: Rectangle {
        readonly property bool isCurrent: row.ListView.isCurrentItem && row.ListView.view.activeFocus

        anchors.fill: parent
        anchors.leftMargin: Theme.small
        anchors.rightMargin: Theme.small
        radius: Theme.smallRadius
        color: row.isSelected ? Theme.tint(Theme.accent, Theme.selectOpacity) : Theme.tint(Theme.secondary, row.hovered ? Theme.hoverOpacity : 0)
        border.width: isCurrent ? Theme.focusWidth : 0
        border.color: Theme.accent
    }

    // An item of its own: one that has a handler takes every mouse button, and the row would take the tap for a click.
    Item {
        anchors.fill: parent

        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: point => row.menuWanted(row.mapToItem(null, point.position.x, point.position.y))
        }
    }
}
