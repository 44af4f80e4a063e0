// The Hugging Face token.
import QtQuick
import QtQuick.Layouts

SettingsSection {
    id: section

    required property var page // SettingsPageModel

    title: qsTr("Hugging Face")
    help: qsTr("Stores the Hugging Face token used by the local diarization models.")

    TokenRow {
        Layout.fillWidth: true
        label: qsTr("HF_TOKEN")
        token: section.page.token
        canSave: section.page.canSaveToken
        isStored: section.page.hasStoredToken
        onEdited: text => section.page.token = text
        onSaved: section.page.save()
        onRemoved: section.page.remove()
    }
    StatusText {
        Layout.fillWidth: true
        line: section.page.tokenLine
    }
    Label {
        Layout.fillWidth: true
        visible: text !== ""
        text: section.page.errorMessage
        color: Theme.negative
        Accessible.role: Accessible.AlertMessage
    }
}
