import QtQuick
import QtQuick.Layouts

SetupPage {
    id: page

    required property var setup // SetupWizardModel

    symbolName: "terminal"
    title: qsTr("Local Tools")

    Label {
        Layout.fillWidth: true
        text: qsTr("Corvane processes audio locally. These tools are installed once and reused by the app.")
        color: Theme.secondary
    }
    StatusText {
        Layout.fillWidth: true
        visible: page.setup.needsNoTools
        line: ({
                "iconName": "info.circle",
                "tone": "secondary",
                "text": qsTr("The worker that comes with this version needs none of them: meetings can be processed without. They serve a worker of your own.")
            })
    }
    Card {
        Layout.fillWidth: true
        Layout.topMargin: Theme.small
        color: Theme.field

        Repeater {
            model: page.setup.tools

            RowLayout {
                id: tool

                required property var modelData

                Layout.fillWidth: true
                spacing: Theme.small
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.name + ": " + modelData.status.text

                Label {
                    Layout.fillWidth: true
                    text: tool.modelData.name
                    font.family: Theme.monospace
                }
                Symbol {
                    name: tool.modelData.status.iconName
                    color: Theme.tone(tool.modelData.status.tone)
                }
                Label {
                    Layout.minimumWidth: 4.5 * Theme.bodySize
                    text: tool.modelData.status.text
                    color: Theme.tone(tool.modelData.status.tone)
                }
            }
        }
    }
    Label {
        Layout.fillWidth: true
        visible: page.setup.isHomebrewWanted
        text: qsTr("Homebrew is not installed. Install Homebrew first, then come back here and click Check Again.")
    }
    ActionButton {
        visible: page.setup.isHomebrewWanted
        text: qsTr("Open Homebrew")
        symbolName: "arrow.up.forward.square"
        onClicked: page.setup.openHomebrew()
    }
    Flow {
        Layout.fillWidth: true
        Layout.topMargin: Theme.tight
        spacing: Theme.small

        ActionButton {
            text: page.setup.isInstalling ? qsTr("Installing...") : qsTr("Install Missing Tools")
            symbolName: page.setup.isInstalling ? "" : "square.and.arrow.down"
            enabled: page.setup.canInstall
            onClicked: page.setup.installMissingTools()
        }
        ActionButton {
            text: qsTr("Check Again")
            symbolName: "arrow.clockwise"
            onClicked: page.setup.refreshTools()
        }
        Spinner {
            visible: page.setup.isInstalling
        }
    }
    CommandText {
        Layout.fillWidth: true
        visible: text !== ""
        text: page.setup.installationMessage
        accessibleName: qsTr("Output of the installation")
    }
}
