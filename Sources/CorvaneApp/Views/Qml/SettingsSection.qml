// A section of the settings page: a title, what it is for behind a small button, and its controls.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

ColumnLayout {
    id: section

    required property string title
    required property string help
    default property alias content: card.content

    spacing: Theme.tight

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.tight

        Label {
            text: section.title
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        ActionButton {
            id: info

            isBare: true
            symbolName: "info.circle"
            tone: Theme.secondary
            helpText: section.help
            accessibleName: qsTr("About %1").arg(section.title)
            isOpen: explanation.visible
            onClicked: explanation.open()

            T.Popup {
                id: explanation

                y: info.height
                x: section.LayoutMirroring.enabled ? info.width - width : 0
                width: Math.min(340, words.implicitWidth + 2 * padding)
                height: words.height + 2 * padding
                margins: Theme.small
                padding: Theme.medium
                focus: true

                contentItem: Label {
                    id: words

                    width: explanation.width - 2 * explanation.padding
                    text: section.help
                }
                background: PopupSurface {
                }
            }
        }
        Item {
            Layout.fillWidth: true
        }
    }
    Card {
        id: card

        Layout.fillWidth: true
    }
}
