// A page of the setup wizard: a symbol and a title, and below them what is put into it.
import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: page

    required property string symbolName
    required property string title
    property color tone: Theme.accent

    spacing: Theme.medium

    RowLayout {
        Layout.fillWidth: true
        Layout.bottomMargin: Theme.tight
        spacing: Theme.medium

        Rectangle {
            implicitWidth: 2.6 * Theme.symbolSize
            implicitHeight: implicitWidth
            radius: width / 2
            color: Theme.tint(page.tone, Theme.badgeOpacity)

            Symbol {
                anchors.centerIn: parent
                name: page.symbolName
                size: 1.5 * Theme.symbolSize
                color: page.tone
            }
        }
        Label {
            Layout.fillWidth: true
            text: page.title
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
    }
}
