// A line of text to type. A secret shows dots.
import QtQuick
import QtQuick.Templates as T

T.TextField {
    id: control

    property string accessibleName
    readonly property string spokenName: accessibleName !== "" ? accessibleName : placeholderText
    property bool isSecret: false
    property bool isBare: false // a frame only while it is used: for a title

    implicitHeight: Math.max(Theme.controlHeight, contentHeight + topPadding + bottomPadding)
    implicitWidth: 220
    leftPadding: Theme.small
    rightPadding: Theme.small
    // Too long for the field, and not being typed: then its beginning is shown, and that there is more.
    readonly property bool isCut: !activeFocus && !isSecret && contentWidth > width - leftPadding - rightPadding

    color: isCut ? "transparent" : Theme.text
    placeholderTextColor: Theme.secondary
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentContent
    font.pixelSize: Theme.bodySize
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    hoverEnabled: true
    echoMode: isSecret ? TextInput.Password : TextInput.Normal
    inputMethodHints: isSecret ? Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase : Qt.ImhNone
    opacity: enabled ? 1 : Theme.disabledOpacity

    Accessible.role: Accessible.EditableText
    Accessible.name: spokenName
    Accessible.focusable: true

    Text {
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        text: control.isCut ? control.text : control.placeholderText
        textFormat: Text.PlainText
        color: control.isCut ? Theme.text : control.placeholderTextColor
        font: control.font
        elide: Text.ElideRight
        visible: control.isCut || (control.length === 0 && control.preeditText === "")
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.smallRadius
        color: control.isBare ? Theme.tint(Theme.secondary, control.enabled && (control.activeFocus || control.hovered) ? Theme.hoverOpacity : 0) : Theme.field
        border.width: control.activeFocus ? Theme.focusWidth : (control.isBare ? 0 : Theme.hair)
        border.color: control.activeFocus ? Theme.accent : (control.hovered ? Theme.controlLine : Theme.line)
    }
}
