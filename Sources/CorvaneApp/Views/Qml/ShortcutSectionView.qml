// The shortcuts of one place, each with its keys as they are written on the keyboard.
import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: root

    required property var section // ShortcutSection

    spacing: Theme.tight

    Label {
        Layout.fillWidth: true
        text: root.section.title
        color: Theme.secondary
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        wrapMode: Text.NoWrap // a line that is broken while the sheet is laid out leaves its gap behind
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Repeater {
        model: root.section.shortcuts

        RowLayout {
            id: line

            required property var modelData

            Layout.fillWidth: true
            spacing: Theme.tight
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.text + ": " + modelData.keys.join(", ")

            Text {
                Layout.fillWidth: true
                text: line.modelData.text
                color: Theme.text
                font.pixelSize: Theme.bodySize
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Repeater {
                model: line.modelData.keys

                Rectangle {
                    id: key

                    required property string modelData

                    implicitWidth: words.implicitWidth + 2 * Theme.small
                    implicitHeight: words.implicitHeight + 2 * Theme.tight
                    radius: Theme.smallRadius
                    color: Theme.field
                    border.width: Theme.hair
                    border.color: Theme.line

                    Text {
                        id: words

                        anchors.centerIn: parent
                        text: written.nativeText
                        color: Theme.secondary
                        font.pixelSize: Theme.captionSize
                        Accessible.ignored: true
                    }
                    // Knows what the user's keyboard calls the keys; it watches for nothing.
                    Shortcut {
                        id: written

                        enabled: false
                        sequence: key.modelData
                    }
                }
            }
        }
    }
}
