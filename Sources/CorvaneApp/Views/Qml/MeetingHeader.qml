// Everything above the turns of the transcript.
import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: root

    required property var detail // MeetingDetailModel

    function editTitle() {
        titleField.forceActiveFocus(Qt.ShortcutFocusReason);
        titleField.selectAll();
    }

    spacing: Theme.large

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: Theme.wide
        spacing: Theme.small

        TextInputField {
            id: titleField

            Layout.fillWidth: true
            Layout.leftMargin: -Theme.small
            isBare: true
            placeholderText: qsTr("Meeting name")
            font.pixelSize: Theme.displaySize
            font.weight: Font.DemiBold
            text: root.detail.title
            onTextEdited: root.detail.typeTitle(text)
            onAccepted: root.detail.submitTitle(text)
            onActiveFocusChanged: {
                if (activeFocus)
                    root.detail.beginTitleEditing();
                else
                    root.detail.endTitleEditing();
            }

            // Typing breaks the binding; what the model says afterwards still has to show.
            Connections {
                target: root.detail
                function onTitleChanged() {
                    if (titleField.text !== root.detail.title)
                        titleField.text = root.detail.title;
                }
            }
        }
        ActionButton {
            Layout.rightMargin: -Theme.medium
            visible: root.detail.hasNotionPage
            isBare: true
            symbolName: "arrow.up.forward.square"
            text: qsTr("Open Notion page")
            tone: Theme.accent
            onClicked: root.detail.openNotionPage()
        }
    }

    InProgressCard {
        Layout.fillWidth: true
        visible: root.detail.isRecordingSessionVisible
        panel: root.detail.inProgressPanel
        onPressed: action => root.detail.press(action)
    }
    StatusCard {
        Layout.fillWidth: true
        visible: !root.detail.isRecordingSessionVisible
        panel: root.detail.statusPanel
        onPressed: action => root.detail.press(action)
    }

    ProcessingSettings {
        Layout.fillWidth: true
        detail: root.detail
    }

    Disclosure {
        id: job

        Layout.fillWidth: true
        title: qsTr("Processing Details")
        onToggled: expanded => job.isExpanded = expanded

        GridLayout {
            columns: 2
            columnSpacing: Theme.wide
            rowSpacing: Theme.tight

            Repeater {
                model: root.detail.jobRows

                Label {
                    required property int index
                    required property var modelData

                    Layout.row: index
                    Layout.column: 0
                    text: modelData.label
                    color: Theme.secondary
                }
            }
            Repeater {
                model: root.detail.jobRows

                SelectableText {
                    required property int index
                    required property var modelData

                    Layout.row: index
                    Layout.column: 1
                    Layout.fillWidth: true
                    text: modelData.value
                    Accessible.name: modelData.label + ": " + modelData.value
                }
            }
        }
    }

    SpeakersPanel {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        visible: root.detail.hasTranscript
        speakers: root.detail.speakers
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        Layout.bottomMargin: Theme.small
        visible: root.detail.hasTranscript

        Label {
            Layout.fillWidth: true
            text: root.detail.transcript.title
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        ActionButton {
            Layout.rightMargin: -Theme.small
            isBare: true
            symbolName: root.detail.transcript.copyIconName
            accessibleName: root.detail.transcript.copyAccessibilityLabel
            helpText: root.detail.transcript.copyAccessibilityLabel
            enabled: root.detail.transcript.canCopy
            onClicked: root.detail.transcript.copyTranscript()
        }
    }

    EmptyState {
        Layout.fillWidth: true
        Layout.topMargin: Theme.vast
        Layout.bottomMargin: Theme.vast
        visible: !root.detail.hasTranscript
        symbolName: "doc.text.magnifyingglass"
        title: qsTr("No Transcript")
        text: qsTr("Process a recording or select a completed meeting.")
    }
}
