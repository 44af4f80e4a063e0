// Words beside a control, shown after a moment.
import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: tip

    property bool shown: false

    visible: shown && text !== ""
    delay: 600
    timeout: 8000
    y: parent ? parent.height + Theme.tight : 0
    x: parent ? (parent.width - width) / 2 : 0
    margins: Theme.small
    padding: Theme.small
    implicitWidth: Math.min(320, words.implicitWidth + leftPadding + rightPadding)
    implicitHeight: words.implicitHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: Text {
        id: words

        text: tip.text
        color: Theme.window
        font.pixelSize: Theme.captionSize
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: Theme.text
    }
}
