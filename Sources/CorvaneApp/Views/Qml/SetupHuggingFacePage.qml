import QtQuick
import QtQuick.Layouts

SetupPage {
    id: page

    required property var setup // SetupWizardModel

    symbolName: "person.badge.key"
    title: qsTr("Hugging Face")

    Repeater {
        model: [qsTr("Speaker diarization detects who spoke when, so the transcript can be split into speaker labels such as SPEAKER_00 and SPEAKER_01."), qsTr("To use diarization, create a free Hugging Face account and a token with Read access. Corvane stores the token in macOS Keychain."), qsTr("Before the token works, you must also open the pyannote model page while signed in and accept its model agreement.")]

        Label {
            required property string modelData

            Layout.fillWidth: true
            text: modelData
            color: Theme.secondary
        }
    }
    Flow {
        Layout.fillWidth: true
        Layout.topMargin: Theme.tight
        spacing: Theme.small

        ActionButton {
            text: qsTr("Create Account")
            symbolName: "arrow.up.forward.square"
            onClicked: page.setup.createAccount()
        }
        ActionButton {
            text: qsTr("Accept Model Agreement")
            symbolName: "arrow.up.forward.square"
            onClicked: page.setup.acceptModelAgreement()
        }
        ActionButton {
            text: qsTr("Create Read Token")
            symbolName: "arrow.up.forward.square"
            onClicked: page.setup.createReadToken()
        }
    }
    Card {
        Layout.fillWidth: true
        Layout.topMargin: Theme.tight
        color: Theme.field

        Grid {
            id: grid

            readonly property real columnWidth: (width - columnSpacing) / 2

            Layout.fillWidth: true
            columns: 2
            columnSpacing: Theme.large
            rowSpacing: Theme.medium

            SetupDetailRow {
                width: grid.columnWidth
                title: qsTr("1. Sign in or create an account")
                detail: qsTr("Use the Hugging Face account page.")
            }
            SetupDetailRow {
                width: grid.columnWidth
                title: qsTr("2. Accept the model agreement")
                detail: qsTr("Open pyannote/speaker-diarization-community-1 and accept access to the model files.")
            }
            SetupDetailRow {
                width: grid.columnWidth
                title: qsTr("3. Create a token")
                detail: qsTr("A Hugging Face token with Read access is enough for diarization.")
            }
            SetupDetailRow {
                width: grid.columnWidth
                title: qsTr("4. Paste it below")
                detail: qsTr("The token is stored in macOS Keychain.")
            }
        }
    }
    TextInputField {
        Layout.fillWidth: true
        placeholderText: qsTr("hf_...")
        accessibleName: qsTr("Hugging Face token")
        isSecret: true
        text: page.setup.hfToken
        onTextEdited: page.setup.hfToken = text
        // With nothing typed the key is the wizard's, which goes on.
        Keys.onReturnPressed: event => save(event)
        Keys.onEnterPressed: event => save(event)

        function save(event) {
            event.accepted = page.setup.canSaveToken;
            page.setup.saveHuggingFaceToken();
        }
    }
    StatusText {
        Layout.fillWidth: true
        line: page.setup.tokenLine
    }
    Label {
        Layout.fillWidth: true
        visible: text !== ""
        text: page.setup.hfError
        color: Theme.negative
        Accessible.role: Accessible.AlertMessage
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.small

        ActionButton {
            text: qsTr("Save Token")
            enabled: page.setup.canSaveToken
            isProminent: true
            onClicked: page.setup.saveHuggingFaceToken()
        }
        ActionButton {
            text: qsTr("Skip for Now")
            onClicked: page.setup.completeStep()
        }
    }
}
