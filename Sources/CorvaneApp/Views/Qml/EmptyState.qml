// Nothing is here yet, and what to do about it.
import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: root

    property string symbolName
    property string title
    property string text

    spacing: Theme.small

    Symbol {
        Layout.alignment: Qt.AlignHCenter
        name: root.symbolName
        size: 2.4 * Theme.titleSize
        color: Theme.tint(Theme.secondary, 0.7)
    }
    Label {
        Layout.fillWidth: true
        text: root.title
        font.pixelSize: Theme.headlineSize
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        Layout.fillWidth: true
        visible: root.text !== ""
        text: root.text
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
    }
}
