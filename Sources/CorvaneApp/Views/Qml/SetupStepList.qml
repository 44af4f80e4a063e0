// The steps of the setup, and which are done. To be read, not pressed.
import QtQuick
import QtQuick.Layouts

Rectangle {
    id: list

    required property var steps

    radius: Theme.radius
    color: Theme.sidebar
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Setup")

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.small
        anchors.topMargin: Theme.large
        spacing: Theme.tight

        Label {
            Layout.leftMargin: Theme.small
            Layout.bottomMargin: Theme.small
            text: qsTr("Setup")
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
        Repeater {
            model: list.steps

            Rectangle {
                id: step

                required property var modelData

                Layout.fillWidth: true
                implicitHeight: Theme.controlHeight
                radius: Theme.smallRadius
                color: modelData.isCurrent ? Theme.tint(Theme.accent, Theme.hoverOpacity) : "transparent"
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.isCompleted ? qsTr("%1, done").arg(modelData.title) : modelData.title
                Accessible.selected: modelData.isCurrent

                Row {
                    anchors.fill: parent
                    anchors.leftMargin: Theme.small
                    anchors.rightMargin: Theme.small
                    spacing: Theme.small

                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: step.modelData.iconName
                        color: step.modelData.isCompleted ? Theme.positive : (step.modelData.isCurrent ? Theme.accent : Theme.secondary)
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: step.modelData.title
                        color: Theme.text
                        font.pixelSize: Theme.bodySize
                        font.weight: step.modelData.isCurrent ? Font.DemiBold : Font.Normal
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
