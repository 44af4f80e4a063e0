// Newer releases.
import QtQuick
import QtQuick.Layouts

SettingsSection {
    id: section

    required property var page // SettingsPageModel
    readonly property var panel: page.updates

    title: qsTr("Updates")
    help: qsTr("Checks whether a newer Corvane DMG is available to download.")

    StatusText {
        Layout.fillWidth: true
        line: section.panel.version
    }
    SwitchRow {
        Layout.fillWidth: true
        text: qsTr("Check automatically")
        checked: section.page.checksAutomatically
        onToggled: section.page.checksAutomatically = checked
    }
    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.medium

        Label {
            Layout.fillWidth: true
            text: section.panel.lastChecked
            color: Theme.secondary
        }
        ActionButton {
            text: qsTr("Check for Updates")
            symbolName: "arrow.clockwise"
            enabled: section.panel.canCheck
            onClicked: section.page.checkForUpdates()
        }
    }
    StatusText {
        Layout.fillWidth: true
        visible: !section.panel.hasUpdate && line.text !== ""
        line: section.panel.status
        Accessible.role: Accessible.StatusBar
    }
    Rectangle {
        Layout.fillWidth: true
        visible: section.panel.hasUpdate
        implicitHeight: update.implicitHeight + 2 * Theme.large
        radius: Theme.smallRadius
        color: Theme.tint(Theme.accent, 0.08)
        border.width: Theme.hair
        border.color: Theme.tint(Theme.accent, 0.35)

        ColumnLayout {
            id: update

            anchors.fill: parent
            anchors.margins: Theme.large
            spacing: Theme.small

            StatusText {
                Layout.fillWidth: true
                line: section.panel.status
                isStrong: true
            }
            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: section.panel.published
                color: Theme.secondary
                font.pixelSize: Theme.captionSize
            }
            SelectableText {
                Layout.fillWidth: true
                visible: text !== ""
                text: section.panel.releaseNotes
            }
            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: section.panel.errorMessage
                color: Theme.negative
            }
            RowLayout {
                Layout.topMargin: Theme.tight
                spacing: Theme.medium

                ActionButton {
                    text: qsTr("Download Update")
                    symbolName: "arrow.down.circle"
                    isProminent: true
                    onClicked: section.page.downloadUpdate()
                }
                LinkButton {
                    visible: section.panel.hasReleaseNotesPage
                    text: qsTr("Release Notes")
                    onClicked: section.page.openReleaseNotes()
                }
            }
        }
    }
}
