// The voices of the shown meeting: who they are, and how they sound.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

ColumnLayout {
    id: root

    required property var speakers // SpeakerReviewModel

    spacing: Theme.medium

    Label {
        Layout.fillWidth: true
        text: root.speakers.panel.title
        font.pixelSize: Theme.titleSize
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    SelectableText {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.speakers.summary
        color: Theme.secondary
    }
    Repeater {
        model: root.speakers.cards

        SpeakerCardView {
            Layout.fillWidth: true
            speakers: root.speakers
        }
    }

    AlertDialog {
        id: creation

        readonly property var words: root.speakers.panel.dialog

        parent: T.Overlay.overlay
        visible: root.speakers.panel.isCreatingProfile
        title: words.title
        message: words.message
        answers: [{
                "text": words.createButton.text,
                "isProminent": true,
                "isEnabled": root.speakers.panel.canCreate
            }, {
                "text": words.cancelButton.text
            }]
        onOpened: nameField.forceActiveFocus(Qt.PopupFocusReason)
        onAnswered: index => {
            if (index === 0)
                root.speakers.panel.confirmProfileCreation();
            else
                root.speakers.panel.cancelProfileCreation();
        }

        TextInputField {
            id: nameField

            Layout.fillWidth: true
            accessibleName: creation.words.fieldLabel
            placeholderText: creation.words.fieldLabel
            text: root.speakers.panel.speakerProfileDisplayName
            onTextEdited: root.speakers.panel.speakerProfileDisplayName = text
            onAccepted: root.speakers.panel.confirmProfileCreation()
        }
    }
}
