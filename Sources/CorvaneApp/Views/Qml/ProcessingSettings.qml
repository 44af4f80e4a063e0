// How the shown meeting is to be processed.
import QtQuick
import QtQuick.Layouts

Disclosure {
    id: panel

    required property var detail // MeetingDetailModel

    title: qsTr("Processing")
    summary: detail.settingsSummary
    onToggled: expanded => panel.isExpanded = expanded

    // Opens with a recording, and again when the user comes back to it; does not close with it.
    function openWithRecording() {
        if (panel.visible && panel.detail.isRecordingSessionVisible)
            panel.isExpanded = true;
    }
    Connections {
        target: panel.detail
        function onIsRecordingSessionVisibleChanged() {
            panel.openWithRecording();
        }
    }
    onVisibleChanged: openWithRecording()
    Component.onCompleted: openWithRecording()

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.medium

        Label {
            text: qsTr("Language")
            Accessible.ignored: true
        }
        Picker {
            accessibleName: qsTr("Language")
            choices: panel.detail.languages
            value: panel.detail.language
            onPicked: value => panel.detail.language = value
        }
    }
    SwitchRow {
        text: qsTr("Detect speakers")
        checked: panel.detail.detectsSpeakers
        onToggled: panel.detail.detectsSpeakers = checked
    }
    Label {
        visible: !panel.detail.detectsSpeakers
        text: qsTr("Speaker labels disabled")
        color: Theme.secondary
    }
    Flow {
        Layout.fillWidth: true
        visible: panel.detail.detectsSpeakers
        spacing: Theme.medium

        Label {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Speaker count")
            Accessible.ignored: true
        }
        Picker {
            accessibleName: qsTr("Speaker count")
            choices: panel.detail.speakerCountModes
            value: panel.detail.speakerCountMode
            onPicked: value => panel.detail.speakerCountMode = value
        }
        Repeater {
            model: panel.detail.speakerCountSteppers

            Stepper {
                required property var modelData

                text: modelData.text
                value: modelData.value
                from: modelData.from
                to: modelData.to
                onStepped: value => panel.detail.step(modelData.field, value)
            }
        }
        Label {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            visible: panel.detail.speakerCountSteppers.length === 0
            text: qsTr("Detected automatically")
            color: Theme.secondary
        }
    }
}
