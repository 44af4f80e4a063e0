// A heading and what there is to say about it.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: row

    required property string title
    required property string detail
    property string symbolName

    spacing: Theme.medium

    Symbol {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 1
        visible: row.symbolName !== ""
        name: row.symbolName
        color: Theme.accent
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 1

        Label {
            Layout.fillWidth: true
            text: row.title
            font.weight: Font.DemiBold
        }
        Label {
            Layout.fillWidth: true
            text: row.detail
            color: Theme.secondary
        }
    }
}
