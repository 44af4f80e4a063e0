// A question that has to be answered before anything else. Escape is the last answer, which changes nothing.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.Dialog {
    id: dialog

    property string message
    // Each with a text, and where it applies isProminent, isDestructive, isEnabled; the last one is the way out.
    property var answers: []
    default property alias content: extra.data
    signal answered(int index)

    readonly property int lastAnswer: answers.length - 1

    modal: true
    focus: true
    anchors.centerIn: parent
    width: Math.min(420, (parent ? parent.width : 460) - 2 * Theme.large)
    padding: Theme.wide
    implicitHeight: column.implicitHeight + 2 * padding
    closePolicy: T.Popup.CloseOnEscape

    function answer(index) {
        dialog.answered(index);
    }
    onOpened: buttons.itemAt(dialog.lastAnswer).forceActiveFocus(Qt.TabFocusReason)
    onRejected: dialog.answered(dialog.lastAnswer)

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: PopupSurface {
        radius: Theme.largeRadius
    }
    contentItem: FocusScope {
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.AlertMessage
        Accessible.name: dialog.title + ". " + dialog.message

        Keys.onEscapePressed: dialog.reject()

        ColumnLayout {
            id: column

            width: parent.width
            spacing: Theme.medium

            Label {
                Layout.fillWidth: true
                text: dialog.title
                font.pixelSize: Theme.headlineSize
                font.weight: Font.DemiBold
            }
            Label {
                Layout.fillWidth: true
                text: dialog.message
                color: Theme.secondary
            }
            ColumnLayout {
                id: extra

                Layout.fillWidth: true
                visible: children.length > 0
            }
            Flow {
                Layout.fillWidth: true
                Layout.topMargin: Theme.small
                layoutDirection: Qt.RightToLeft
                spacing: Theme.small

                Repeater {
                    id: buttons

                    model: dialog.answers

                    ActionButton {
                        required property int index
                        required property var modelData

                        text: modelData.text
                        isProminent: modelData.isProminent === true
                        isDestructive: modelData.isDestructive === true
                        enabled: modelData.isEnabled !== false
                        onClicked: dialog.answered(index)
                    }
                }
            }
        }
    }
}
