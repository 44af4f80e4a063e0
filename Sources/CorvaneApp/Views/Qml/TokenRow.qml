// A secret to be typed and stored. What is stored is never shown.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: row

    required property string label
    required property string token
    required property bool canSave
    required property bool isStored
    signal edited(string text)
    signal saved
    signal removed

    spacing: Theme.small

    TextInputField {
        Layout.fillWidth: true
        placeholderText: row.label
        isSecret: true
        text: row.token
        onTextEdited: row.edited(text)
        onAccepted: row.saved()
    }
    // By themselves: the layout does not always notice that one appears.
    Row {
        spacing: Theme.small

        ActionButton {
            text: qsTr("Save")
            isProminent: true
            enabled: row.canSave
            onClicked: row.saved()
        }
        ActionButton {
            text: qsTr("Remove")
            visible: row.isStored
            isDestructive: true
            onClicked: row.removed()
        }
    }
}
