// The settings page: six sections in one column.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

FocusScope {
    id: root

    required property var page // SettingsPageModel

    Component.onCompleted: page.appear()
    Component.onDestruction: page.leave()

    Flickable {
        id: scroll

        anchors.fill: parent
        clip: true
        contentHeight: column.implicitHeight + 2 * Theme.wide
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollLine {
        }

        FocusFollower {
            view: scroll
        }

        ColumnLayout {
            id: column

            x: (scroll.width - width) / 2
            y: Theme.wide
            width: Math.min(Theme.settingsWidth, scroll.width - 2 * Theme.wide)
            spacing: Theme.wide

            HuggingFaceSettings {
                Layout.fillWidth: true
                page: root.page
            }
            DiarizationSettings {
                Layout.fillWidth: true
                page: root.page
            }
            OllamaSettings {
                Layout.fillWidth: true
                page: root.page
            }
            NotionSettings {
                Layout.fillWidth: true
                page: root.page
            }
            UpdateSettings {
                Layout.fillWidth: true
                page: root.page
            }
            SettingsSection {
                Layout.fillWidth: true
                title: qsTr("Setup")
                help: qsTr("Reopens the first-run setup wizard for Hugging Face, Ollama, and local tools.")

                Label {
                    Layout.fillWidth: true
                    text: qsTr("Use this if you skipped onboarding, changed Macs, or want to recheck local dependencies.")
                    color: Theme.secondary
                }
                ActionButton {
                    text: qsTr("Run Setup Wizard")
                    symbolName: "wand.and.stars"
                    onClicked: root.page.runSetupWizard()
                }
            }
        }
    }
}
