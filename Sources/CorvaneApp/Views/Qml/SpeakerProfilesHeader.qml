// Everything above the known people: what is kept of them, the settings of the matching, and the fields for a new one.
import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: root

    required property var page // SpeakerProfilesPageModel
    required property int count

    spacing: Theme.large

    Label {
        Layout.fillWidth: true
        Layout.topMargin: Theme.wide
        text: qsTr("Speaker Profiles")
        font.pixelSize: Theme.displaySize
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: complianceBanner.implicitHeight + 2 * Theme.medium
        radius: Theme.radius
        color: Theme.tint(Theme.negative, 0.12)

        RowLayout {
            id: complianceBanner

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            anchors.margins: Theme.large
            spacing: Theme.medium

            Symbol {
                Layout.alignment: Qt.AlignTop
                name: "exclamationmark.triangle.fill"
                color: Theme.negative
            }
            Label {
                Layout.fillWidth: true
                text: qsTr("Voice profiles are sensitive data. Corvane does not store raw audio in profiles: only local numeric vectors are kept to suggest speaker identification. You can disable this feature or delete all profiles at any time.")
            }
        }
    }

    Card {
        Layout.fillWidth: true

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.small

            SwitchRow {
                Layout.fillWidth: true
                text: qsTr("Voice profile matching")
                checked: root.page.isMatchingEnabled
                onToggled: root.page.isMatchingEnabled = checked
            }
            Label {
                text: root.page.matchingText
                color: Theme.secondary
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.medium
            enabled: root.page.isMatchingEnabled

            Label {
                text: qsTr("Global threshold")
                opacity: enabled ? 1 : Theme.disabledOpacity
                Accessible.ignored: true
            }
            ValueSlider {
                Layout.fillWidth: true
                from: 0.5
                to: 0.99
                stepSize: 0.01
                value: root.page.threshold
                accessibleName: qsTr("Global threshold")
                valueText: root.page.thresholdText
                onMoved: root.page.threshold = value
            }
            Label {
                text: root.page.thresholdText
                color: Theme.secondary
                opacity: enabled ? 1 : Theme.disabledOpacity
            }
        }
    }

    SectionHeading {
        text: qsTr("New Profile")
    }
    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.small

        TextInputField {
            readonly property string stored: root.page.newDisplayName

            Layout.fillWidth: true
            Layout.preferredWidth: 220
            placeholderText: qsTr("Display name")
            text: stored
            onTextEdited: root.page.newDisplayName = text
            onStoredChanged: if (text !== stored)
                text = stored
            onAccepted: root.page.createProfile()
        }
        TextInputField {
            readonly property string stored: root.page.newNotes

            Layout.fillWidth: true
            Layout.preferredWidth: 360
            placeholderText: qsTr("Notes")
            text: stored
            onTextEdited: root.page.newNotes = text
            onStoredChanged: if (text !== stored)
                text = stored
            onAccepted: root.page.createProfile()
        }
        ActionButton {
            symbolName: "plus"
            accessibleName: qsTr("Create profile")
            enabled: root.page.canCreate
            onClicked: root.page.createProfile()
        }
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.bottomMargin: Theme.small
        spacing: Theme.small

        SectionHeading {
            Layout.fillWidth: true
            text: qsTr("Profiles")
        }
        Picker {
            implicitWidth: 230
            choices: root.page.sortChoices
            value: root.page.sortMode
            accessibleName: qsTr("Sort")
            helpText: qsTr("Sort speaker profiles")
            onPicked: chosen => root.page.sortMode = chosen
        }
        ActionButton {
            symbolName: "arrow.clockwise"
            helpText: qsTr("Refresh")
            onClicked: root.page.refresh()
        }
        ActionButton {
            text: qsTr("Delete All")
            symbolName: "trash"
            isDestructive: true
            enabled: root.count > 0
            onClicked: root.page.deleteAll()
        }
    }

    EmptyState {
        Layout.fillWidth: true
        Layout.topMargin: Theme.wide
        visible: root.count === 0
        symbolName: "person.wave.2"
        title: qsTr("No Speaker Profiles")
    }
}
