// A word about something that has ended. Its model lets it go again.
import QtQuick

Rectangle {
    id: toast

    property bool isShown: false
    property string message
    property bool isError: false
    property real maximumWidth: 480

    visible: opacity > 0
    opacity: isShown ? 1 : 0
    width: Math.min(maximumWidth, row.implicitWidth + 2 * Theme.large)
    height: words.implicitHeight + 2 * Theme.medium
    radius: Math.min(height / 2, 22)
    color: Theme.surface
    border.width: Theme.hair
    border.color: Theme.line
    Accessible.role: Accessible.Notification
    Accessible.name: words.text

    Behavior on opacity  {
        NumberAnimation {
            duration: Theme.calm
        }
    }
    // The text stays while the capsule fades.
    onMessageChanged: if (message !== "")
        words.text = message

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Theme.small

        Symbol {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            name: toast.isError ? "xmark.circle.fill" : "checkmark.circle.fill"
            color: toast.isError ? Theme.negative : Theme.positive
        }
        Text {
            id: words

            width: Math.min(implicitWidth, toast.maximumWidth - mark.width - 3 * Theme.large)
            text: toast.message
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.bodySize
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
