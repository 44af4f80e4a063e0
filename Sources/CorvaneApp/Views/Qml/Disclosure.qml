// A section that opens and closes under its own title; a line beside the title tells what is in it.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

ColumnLayout {
    id: section

    required property string title
    property string summary
    property bool isExpanded: false
    default property alias content: body.data
    signal toggled(bool expanded)

    spacing: Theme.small

    T.AbstractButton {
        id: header

        Layout.fillWidth: true
        implicitHeight: Theme.controlHeight
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        checkable: false

        Accessible.role: Accessible.Button
        Accessible.name: section.summary === "" ? section.title : section.title + ", " + section.summary
        Accessible.description: section.isExpanded ? qsTr("Expanded") : qsTr("Collapsed")
        Accessible.onPressAction: header.clicked()
        Keys.onReturnPressed: header.clicked()
        Keys.onEnterPressed: header.clicked()

        onClicked: section.toggled(!section.isExpanded)

        contentItem: RowLayout {
            spacing: Theme.small

            Item {
                implicitWidth: Theme.symbolSize
                implicitHeight: Theme.symbolSize

                Symbol {
                    anchors.centerIn: parent
                    name: section.isExpanded ? "chevron.down" : "chevron.right"
                    color: Theme.secondary
                    size: Theme.bodySize
                    mirror: header.mirrored && !section.isExpanded
                }
            }
            Text {
                text: section.title
                color: Theme.text
                font.pixelSize: Theme.headlineSize
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Item {
                Layout.fillWidth: true
            }
            Text {
                Layout.maximumWidth: section.width * 0.7
                text: section.summary
                color: Theme.secondary
                font.pixelSize: Theme.bodySize
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
        background: Rectangle {
            radius: Theme.smallRadius
            color: header.hovered ? Theme.tint(Theme.secondary, Theme.hoverOpacity) : "transparent"
            anchors.margins: -Theme.tight

            FocusRing {
                control: header
            }
        }
    }

    ColumnLayout {
        id: body

        Layout.fillWidth: true
        Layout.leftMargin: Theme.symbolSize + Theme.small
        visible: section.isExpanded
        spacing: Theme.medium
    }
}
