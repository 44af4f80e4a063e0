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

    // Afterwards the button is of no use, and the keyboard must not be left on it.
    function finish(act) {
        act();
        field.forceActiveFocus(Qt.OtherFocusReason);
    }

    TextInputField {
        id: field

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
            accessibleName: text + ", " + row.label
            isProminent: true
            enabled: row.canSave
            onClicked: row.finish(row.saved)
        }
        ActionButton {
            text: qsTr("Remove")
            accessibleName: text + ", " + row.label
            visible: row.isStored
            isDestructive: true
            onClicked: row.finish(row.removed)
        }
    }
}
