// How speakers are told apart in meetings that are yet to come.
import QtQuick
import QtQuick.Layouts

SettingsSection {
    id: section

    required property var page // SettingsPageModel

    title: qsTr("Diarization Defaults")
    help: qsTr("Controls the default speaker detection mode for newly processed meetings.")

    SwitchRow {
        Layout.fillWidth: true
        text: qsTr("Enable diarization by default")
        checked: section.page.isDiarizationEnabled
        onToggled: section.page.isDiarizationEnabled = checked
    }
    Flow {
        Layout.fillWidth: true
        visible: section.page.isDiarizationEnabled
        spacing: Theme.medium

        Label {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Speakers")
            Accessible.ignored: true
        }
        Picker {
            accessibleName: qsTr("Speakers")
            choices: section.page.speakerCountModes
            value: section.page.speakerCountMode
            onPicked: value => section.page.speakerCountMode = value
        }
        Repeater {
            // Their number, so that a stepper that is used stays the same one and keeps the keyboard.
            model: section.page.speakerCountSteppers.length

            Stepper {
                required property int index
                readonly property var stepper: section.page.speakerCountSteppers[index]

                text: stepper ? stepper.text : ""
                value: stepper ? stepper.value : 1
                from: stepper ? stepper.from : 1
                to: stepper ? stepper.to : 1
                onStepped: value => section.page.step(stepper.field, value)
            }
        }
        Label {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            visible: section.page.speakerCountSteppers.length === 0
            text: qsTr("Detected automatically")
            color: Theme.secondary
        }
    }
}
