// The optional local language model.
import QtQuick
import QtQuick.Layouts

SettingsSection {
    id: section

    required property var page // SettingsPageModel
    readonly property var panel: page.ollama

    title: qsTr("Ollama")
    help: qsTr("Checks the local Ollama setup used for richer private summaries and speaker hints.")

    OllamaStatusView {
        Layout.fillWidth: true
        panel: section.panel

        ActionButton {
            symbolName: "arrow.clockwise"
            helpText: qsTr("Check Ollama again")
            onClicked: section.page.refreshOllama()
        }
    }
    SwitchRow {
        Layout.fillWidth: true
        text: qsTr("Use Ollama for richer speaker hints and summaries")
        checked: section.page.usesOllama
        onToggled: section.page.usesOllama = checked
    }
    LinkButton {
        Layout.leftMargin: -Theme.tight
        visible: section.panel.nextStepKind === "link"
        text: section.panel.nextStep
        onClicked: section.page.openOllamaDownload()
    }
    Label {
        Layout.fillWidth: true
        visible: section.panel.nextStepKind === "text"
        text: section.panel.nextStep
        color: Theme.secondary
    }
    CommandText {
        Layout.fillWidth: true
        visible: section.panel.nextStepKind === "command"
        text: visible ? section.panel.nextStep : ""
        accessibleName: qsTr("Command to install the model")
    }
}
