// The Notion token, the database that meetings are published to, and its columns.
import QtQuick
import QtQuick.Layouts

SettingsSection {
    id: section

    required property var page // SettingsPageModel

    title: qsTr("Notion")
    help: qsTr("Stores the Notion integration token and validates the target database for transcript sync.")

    TokenRow {
        Layout.fillWidth: true
        label: qsTr("Notion integration token")
        token: section.page.notionToken
        canSave: section.page.canSaveNotionToken
        isStored: section.page.hasNotionToken
        onEdited: text => section.page.notionToken = text
        onSaved: section.page.saveNotion()
        onRemoved: section.page.removeNotionToken()
    }
    StatusText {
        Layout.fillWidth: true
        line: section.page.notionTokenLine
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: Theme.tight
        spacing: Theme.small

        TextInputField {
            Layout.fillWidth: true
            placeholderText: qsTr("Notion database URL")
            text: section.page.notionDatabaseURL
            onTextEdited: section.page.notionDatabaseURL = text
            onAccepted: section.page.syncNotionDatabase()
        }
        Row {
            spacing: Theme.small

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                visible: section.page.isFetchingNotion
            }
            ActionButton {
                text: qsTr("Sync DB")
                enabled: section.page.canSyncNotion
                onClicked: section.page.syncNotionDatabase()
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        visible: section.page.notionDatabaseTitle !== ""
        spacing: Theme.small

        Symbol {
            name: "checkmark.circle.fill"
            color: Theme.positive
        }
        Label {
            Layout.fillWidth: true
            text: section.page.notionDatabaseTitle
        }
    }
    StatusText {
        Layout.fillWidth: true
        line: section.page.notionOutcome
        Accessible.role: Accessible.StatusBar
    }
    Rectangle {
        Layout.fillWidth: true
        Layout.topMargin: Theme.tight
        implicitHeight: Theme.hair
        color: Theme.line
    }
    Label {
        text: qsTr("Notion property mapping")
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Label {
        Layout.fillWidth: true
        visible: !section.page.hasNotionProperties
        text: qsTr("Click Sync DB to load properties from the selected Notion database.")
        color: Theme.secondary
    }
    GridLayout {
        Layout.fillWidth: true
        visible: section.page.hasNotionProperties
        columns: 2
        columnSpacing: Theme.large
        rowSpacing: Theme.small

        Repeater {
            model: section.page.notionMappings

            Label {
                required property int index
                required property string modelData

                Layout.row: index
                Layout.column: 0
                text: modelData
                color: Theme.secondary
                Accessible.ignored: true
            }
        }
        Repeater {
            model: section.page.notionMappings

            Picker {
                required property int index
                required property string modelData

                Layout.row: index
                Layout.column: 1
                Layout.fillWidth: true
                accessibleName: modelData
                choices: section.page.notionProperties
                value: section.page.mappedNotionProperties[index]
                onPicked: value => section.page.mapNotionProperty(index, value)
            }
        }
    }
}
