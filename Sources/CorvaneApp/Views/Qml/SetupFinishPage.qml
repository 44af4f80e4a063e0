import QtQuick
import QtQuick.Layouts

SetupPage {
    symbolName: "checkmark.circle.fill"
    title: qsTr("Ready to Record")
    tone: Theme.positive

    Label {
        Layout.fillWidth: true
        text: qsTr("Setup can be reopened from Settings at any time. If you skipped Hugging Face, diarization will ask for the token before it can run.")
        color: Theme.secondary
    }
    Card {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        spacing: Theme.large
        color: Theme.field

        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "record.circle"
            title: qsTr("Record or import audio")
            detail: qsTr("Use the controls at the bottom of the dashboard.")
        }
        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "waveform"
            title: qsTr("Process locally")
            detail: qsTr("The worker uses the tools checked in setup.")
        }
        SetupDetailRow {
            Layout.fillWidth: true
            symbolName: "person.wave.2"
            title: qsTr("Edit speaker names")
            detail: qsTr("Speaker labels can be renamed after processing.")
        }
    }
}
