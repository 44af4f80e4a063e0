// Words that open a page of the web.
import QtQuick
import QtQuick.Templates as T

T.AbstractButton {
    id: control

    readonly property int spokenRole: Accessible.Link

    implicitWidth: words.implicitWidth + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: Theme.tight
    rightPadding: Theme.tight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.role: spokenRole
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
    contentItem: Text {
        id: words

        text: control.text
        color: Theme.accent
        font.pixelSize: Theme.bodySize
        font.weight: Font.Medium
        font.underline: control.hovered || control.down
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Item {
        FocusRing {
            control: control
            anchors.topMargin: Theme.tight - Theme.focusWidth
            anchors.bottomMargin: Theme.tight - Theme.focusWidth
        }
    }
}
