// A button with words, a symbol, or both.
import QtQuick
import QtQuick.Templates as T

T.Button {
    id: control

    property string symbolName
    property string helpText
    property string accessibleName
    property bool isProminent: false
    property bool isDestructive: false
    property bool isRound: false
    property bool isBare: false // no frame: for buttons in a text or a header
    property bool isOpen: false // what it opens is on screen, where the help would lie over it
    property color tone: isDestructive ? Theme.negative : Theme.text

    // What cannot be pressed does not stand out, and its words can still be read.
    readonly property bool isFilled: isProminent && enabled
    readonly property color fill: isDestructive ? Theme.negative : Theme.accent
    readonly property color content: isFilled ? (isDestructive ? Theme.negativeContent : Theme.accentContent) : (isProminent ? Theme.secondary : tone)

    function groundColor() {
        if (isFilled)
            return fill;
        if (isProminent)
            return Theme.tint(Theme.secondary, Theme.hoverOpacity);
        if (isRound)
            return Theme.tint(tone, Theme.badgeOpacity);
        return isBare ? "transparent" : Theme.surface;
    }

    implicitHeight: Theme.controlHeight
    implicitWidth: Math.max(implicitHeight, row.implicitWidth + leftPadding + rightPadding)
    leftPadding: text === "" ? Theme.small : Theme.medium
    rightPadding: leftPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled || isProminent ? 1 : Theme.disabledOpacity

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName !== "" ? accessibleName : (text !== "" ? text : helpText)
    Accessible.description: helpText
    Accessible.focusable: true
    Accessible.onPressAction: if (control.enabled)
        control.clicked()

    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    contentItem: Item {
        Row {
            id: row

            anchors.centerIn: parent
            spacing: Theme.small

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.symbolName !== ""
                name: control.symbolName
                color: control.content
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.text !== ""
                text: control.text
                color: control.content
                font.pixelSize: Theme.bodySize
                font.weight: control.isProminent ? Font.DemiBold : Font.Medium
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        id: ground

        radius: control.isRound ? height / 2 : Theme.smallRadius
        color: control.groundColor()
        border.width: control.isProminent || control.isBare || control.isRound ? 0 : Theme.hair
        border.color: control.isDestructive ? Theme.negative : Theme.line

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.tint(control.isProminent ? Theme.accentContent : Theme.secondary, control.down ? Theme.pressOpacity : Theme.hoverOpacity)
            visible: control.enabled && (control.hovered || control.down)
        }
        FocusRing {
            control: control
            radius: ground.radius + Theme.focusWidth + 1
        }
    }

    ToolTipText {
        shown: (control.hovered || control.visualFocus) && !control.isOpen
        text: control.helpText
    }
}
