// Words of a terminal, to be read, selected and copied. Long ones scroll.
import QtQuick
import QtQuick.Templates as T

Rectangle {
    id: box

    property alias text: words.text
    property alias accessibleName: words.accessibleName

    implicitWidth: words.implicitWidth + 2 * Theme.medium
    implicitHeight: Math.min(12 * Theme.bodySize, words.contentHeight) + 2 * Theme.small
    radius: Theme.smallRadius
    color: Theme.field
    border.width: Theme.hair
    border.color: Theme.line

    Flickable {
        id: scroll

        anchors.fill: parent
        anchors.margins: Theme.small
        anchors.leftMargin: Theme.medium
        anchors.rightMargin: Theme.medium
        clip: true
        contentHeight: words.contentHeight
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollLine {
        }

        SelectableText {
            id: words

            property string accessibleName

            width: scroll.width
            font.family: Theme.monospace
            font.pixelSize: Theme.bodySize - 1
            activeFocusOnTab: true
            Accessible.description: accessibleName
        }
    }
    FocusRing {
        control: words
    }
}
