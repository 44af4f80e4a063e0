// Where the local language model stands. What is put into it stands at its right.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: row

    required property var panel // OllamaPanel
    default property alias content: trailing.data

    spacing: Theme.medium

    Symbol {
        Layout.alignment: Qt.AlignTop
        name: row.panel.title.iconName
        size: 1.3 * Theme.symbolSize
        color: Theme.tone(row.panel.title.tone)
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        Label {
            Layout.fillWidth: true
            text: row.panel.title.text
            font.weight: Font.DemiBold
        }
        Label {
            Layout.fillWidth: true
            text: row.panel.detail
            color: Theme.secondary
        }
    }
    RowLayout {
        id: trailing

        Layout.alignment: Qt.AlignVCenter
        spacing: Theme.small
    }
}
