// A text whose words can be selected and copied.
import QtQuick

TextEdit {
    id: edit

    color: Theme.text
    font.pixelSize: Theme.bodySize
    wrapMode: TextEdit.Wrap
    textFormat: TextEdit.PlainText
    readOnly: true
    selectByMouse: true
    persistentSelection: false
    activeFocusOnPress: true
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentContent
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.readOnly: true

    Keys.onEscapePressed: edit.deselect()
}
