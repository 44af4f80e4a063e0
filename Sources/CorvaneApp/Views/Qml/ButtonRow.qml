// The buttons of a panel as its model gives them, one after the other and, where there is no room, below.
import QtQuick

Flow {
    id: row

    required property var buttons
    property bool isCompact: false
    signal pressed(int action)

    spacing: Theme.small

    Repeater {
        model: row.buttons

        ActionButton {
            required property var modelData

            text: modelData.text
            symbolName: modelData.iconName
            helpText: modelData.helpText
            accessibleName: modelData.accessibilityLabel
            isProminent: modelData.isProminent
            enabled: modelData.isEnabled
            isBare: row.isCompact
            onClicked: row.pressed(modelData.action)
        }
    }
}
