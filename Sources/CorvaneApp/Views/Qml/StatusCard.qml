// Where the shown meeting stands, and what can be done with it.
import QtQuick
import QtQuick.Layouts

Card {
    id: card

    required property var panel // MeetingStatusPanel
    signal pressed(int action)

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.medium

        Rectangle {
            implicitWidth: 2.4 * Theme.symbolSize
            implicitHeight: implicitWidth
            radius: width / 2
            color: Theme.tint(Theme.tone(card.panel.tone), Theme.badgeOpacity)

            Symbol {
                anchors.centerIn: parent
                name: card.panel.iconName
                size: 1.3 * Theme.symbolSize
                color: Theme.tone(card.panel.tone)
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                Layout.fillWidth: true
                text: card.panel.title
                font.pixelSize: Theme.headlineSize
                font.weight: Font.DemiBold
            }
            Label {
                Layout.fillWidth: true
                text: card.panel.detail
                color: Theme.secondary
            }
        }
        ButtonRow {
            Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
            buttons: card.panel.primaryButtons
            visible: buttons.length > 0
            onPressed: action => card.pressed(action)
        }
    }
    RowLayout {
        Layout.fillWidth: true
        visible: card.panel.isProcessing
        spacing: Theme.medium

        ProgressLine {
            Layout.fillWidth: true
            value: card.panel.progress
            accessibleName: qsTr("Processing progress")
        }
        Label {
            text: card.panel.progressText
            color: Theme.secondary
        }
    }
    ButtonRow {
        Layout.fillWidth: true
        buttons: card.panel.secondaryButtons
        onPressed: action => card.pressed(action)
    }
}
