import QtQuick
import QtQuick.Layouts

SetupPage {
    symbolName: "waveform.circle.fill"
    title: qsTr("Welcome to Corvane")

    Label {
        Layout.fillWidth: true
        text: qsTr("This setup takes care of the few things macOS cannot infer from the app bundle: speaker diarization access, optional local summaries, and local transcription tools.")
        color: Theme.secondary
    }
    Card {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        spacing: Theme.large
        color: Theme.field

        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "person.badge.key"
            title: qsTr("Hugging Face")
            detail: qsTr("Required only when speaker diarization is enabled.")
        }
        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "sparkles"
            title: qsTr("Ollama")
            detail: qsTr("Optional. Adds richer private summaries and speaker hints.")
        }
        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "terminal"
            title: qsTr("Local tools")
            detail: qsTr("Python, uv, ffmpeg, and whispermlx for local processing.")
        }
    }
}
