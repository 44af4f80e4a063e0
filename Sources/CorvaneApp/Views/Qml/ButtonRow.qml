// The buttons of a panel as its model gives them, one after the other and, where there is no room, below.
import QtQuick

Flow {
    id: row

    required property var buttons
    property bool isCompact: false
    signal pressed(int action)

    // What all of them need beside each other.
    readonly property real lineWidth: {
        let sum = -spacing;
        for (let i = 0; i < children.length; ++i)
            sum += children[i] instanceof ActionButton ? children[i].implicitWidth + spacing : 0;
        return Math.max(0, sum);
    }

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
