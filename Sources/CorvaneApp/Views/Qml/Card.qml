// A surface that holds a panel.
import QtQuick
import QtQuick.Layouts

Rectangle {
    id: card

    default property alias content: column.data
    property int padding: Theme.large
    property alias spacing: column.spacing

    color: Theme.surface
    radius: Theme.radius
    border.width: Theme.hair
    border.color: Theme.line
    implicitHeight: column.implicitHeight + 2 * padding
    implicitWidth: column.implicitWidth + 2 * padding

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: card.padding
        spacing: Theme.medium
    }
}
