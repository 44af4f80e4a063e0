// A line of text with a symbol before it, as a model gives it.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: row

    required property var line // StatusLine
    property bool isStrong: false

    visible: line.text !== ""
    spacing: Theme.small

    Symbol {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: Math.max(0, (words.font.pixelSize * 1.25 - size) / 2)
        visible: row.line.iconName !== ""
        name: row.line.iconName
        color: Theme.tone(row.line.tone)
    }
    Label {
        id: words

        Layout.fillWidth: true
        text: row.line.text
        color: row.line.tone === "negative" ? Theme.negative : (row.isStrong || row.line.tone === "positive" ? Theme.text : Theme.secondary)
        font.weight: row.isStrong ? Font.DemiBold : Font.Normal
    }
}
