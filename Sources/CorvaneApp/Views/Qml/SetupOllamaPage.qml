import QtQuick
import QtQuick.Layouts

SetupPage {
    id: page

    required property var setup // SetupWizardModel
    readonly property var panel: setup.ollama

    symbolName: "sparkles"
    title: qsTr("Ollama")

    Label {
        Layout.fillWidth: true
        text: qsTr("Ollama is optional. Transcription and diarization work without it. If enabled, Corvane can use a small local model for richer private meeting summaries and speaker hints.")
        color: Theme.secondary
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Install Ollama only if you want those richer local summaries. The recommended model is qwen3:1.7b.")
        color: Theme.secondary
    }
    Card {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        color: Theme.field

        OllamaStatusView {
            Layout.fillWidth: true
            panel: page.panel
        }
        CommandText {
            Layout.fillWidth: true
            visible: page.panel.nextStepKind === "command"
            color: Theme.surface
            text: visible ? page.panel.nextStep : ""
            accessibleName: qsTr("Command to install the model")
        }
        Flow {
            Layout.fillWidth: true
            spacing: Theme.small

            ActionButton {
                text: qsTr("Download Ollama")
                symbolName: "arrow.up.forward.square"
                onClicked: page.setup.downloadOllama()
            }
            ActionButton {
                text: qsTr("Check Again")
                symbolName: "arrow.clockwise"
                onClicked: page.setup.refreshOllama()
            }
        }
    }
    SwitchRow {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        text: qsTr("Use Ollama for richer speaker hints and summaries")
        checked: page.setup.usesOllama
        onToggled: page.setup.usesOllama = checked
    }
}
