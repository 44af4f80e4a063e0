// A setting that is on or off.
import QtQuick
import QtQuick.Templates as T

T.Switch {
    id: control

    property string accessibleName
    property string helpText

    implicitHeight: Math.max(Theme.controlHeight, words.implicitHeight)
    implicitWidth: track.width + (text === "" ? 0 : Theme.small + words.implicitWidth)
    spacing: Theme.small
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabledOpacity

    Accessible.role: Accessible.CheckBox
    Accessible.name: accessibleName !== "" ? accessibleName : text
    Accessible.description: helpText
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.focusable: true
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()
    Keys.onReturnPressed: flip()
    Keys.onEnterPressed: flip()

    function flip() {
        control.toggle();
        control.toggled();
    }

    indicator: Rectangle {
        id: track

        x: control.mirrored ? control.width - width : 0
        anchors.verticalCenter: parent.verticalCenter
        width: Math.round(34 * Theme.textScale)
        height: Math.round(20 * Theme.textScale)
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.field
        border.width: control.checked ? 0 : Theme.hair
        border.color: Theme.controlLine

        Rectangle {
            y: 3
            x: control.checked !== control.mirrored ? parent.width - width - 3 : 3
            width: parent.height - 6
            height: width
            radius: width / 2
            color: control.checked ? Theme.accentContent : Theme.controlLine

            Behavior on x  {
                NumberAnimation {
                    duration: Theme.quick
                    easing.type: Easing.OutCubic
                }
            }
        }
        FocusRing {
            control: control
            radius: height / 2
        }
    }
    contentItem: Text {
        id: words

        leftPadding: control.mirrored ? 0 : track.width + control.spacing
        rightPadding: control.mirrored ? track.width + control.spacing : 0
        text: control.text
        color: Theme.text
        font.pixelSize: Theme.bodySize
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    ToolTipText {
        shown: control.hovered
        text: control.helpText
    }
}
