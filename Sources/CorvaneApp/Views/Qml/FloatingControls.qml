// The controls that are always at hand, and beside them the status line.
import QtQuick
import QtQuick.Layouts

Rectangle {
    id: bar

    required property var detail // MeetingDetailModel
    required property real side // free at both ends, as beside the meeting above

    implicitHeight: row.implicitHeight + 2 * Theme.medium
    color: Theme.window

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        height: Theme.hair
        color: Theme.line
    }
    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.leftMargin: bar.side
        anchors.rightMargin: bar.side
        spacing: Theme.medium

        ButtonRow {
            Layout.fillWidth: true
            Layout.minimumWidth: Math.min(lineWidth, 0.8 * row.width)
            Layout.preferredWidth: lineWidth
            buttons: bar.detail.floatingControls
            onPressed: action => bar.detail.press(action)
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.preferredWidth: 200
            spacing: 3

            Label {
                Layout.fillWidth: true
                text: bar.detail.longWorkText !== "" ? bar.detail.longWorkText : bar.detail.statusMessage
                color: Theme.secondary
                font.pixelSize: Theme.captionSize
                horizontalAlignment: Text.AlignRight
                maximumLineCount: 3
                elide: Text.ElideRight
                Accessible.role: Accessible.StatusBar
            }
            ProgressLine {
                Layout.fillWidth: true
                visible: bar.detail.longWorkText !== ""
                value: bar.detail.longWorkProgress
                accessibleName: bar.detail.longWorkText
            }
        }
    }
}
