// A known person: the name and notes are edited in place and saved by themselves.
import QtQuick
import QtQuick.Layouts

FocusScope {
    id: row

    required property var page // SpeakerProfilesPageModel
    required property int index
    required property string profileID
    required property string displayName
    required property string notes
    required property bool isProfileEnabled
    required property var figures

    readonly property bool isCurrent: ListView.isCurrentItem
    readonly property var controls: [enabledSwitch, nameField, notesField, deleteButton]
    property int number: 0 // what the page knows the row by while it is shown

    // What is typed must outlive every refresh: the fields take what is stored once and then go their own way.
    function begin() {
        row.number = 0;
        nameField.text = row.displayName;
        notesField.text = row.notes;
        nameField.cursorPosition = 0; // of a long text the beginning is seen
        notesField.cursorPosition = 0;
        enabledSwitch.checked = row.isProfileEnabled;
        row.number = row.page.beginRow(row.profileID);
    }
    function end() {
        row.page.endRow(row.number);
        row.number = 0;
    }
    function move(by) {
        const view = row.ListView.view;
        const column = Math.max(0, row.controls.findIndex(control => control.activeFocus));
        view.currentIndex = Math.max(0, Math.min(view.count - 1, row.index + by));
        (view.currentItem as SpeakerProfileRow).controls[column].forceActiveFocus(Qt.TabFocusReason);
    }

    Component.onCompleted: begin()
    Component.onDestruction: end()
    ListView.onReused: begin()
    ListView.onPooled: end()
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index
    Keys.onUpPressed: move(-1)
    Keys.onDownPressed: move(1)

    implicitHeight: card.implicitHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: displayName

    Card {
        id: card

        anchors.fill: parent
        padding: Theme.medium
        spacing: Theme.small

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.small

            SwitchRow {
                id: enabledSwitch

                activeFocusOnTab: row.isCurrent || row.activeFocus
                helpText: checked ? qsTr("Disable profile") : qsTr("Enable profile")
                accessibleName: helpText + ", " + row.displayName
                onToggled: row.page.toggle(row.number, checked)
            }
            TextInputField {
                id: nameField

                Layout.fillWidth: true
                Layout.preferredWidth: 220
                focus: true
                isBare: true
                font.weight: Font.DemiBold
                activeFocusOnTab: row.isCurrent || row.activeFocus
                placeholderText: qsTr("Display name")
                accessibleName: placeholderText + ", " + row.displayName
                onTextChanged: row.page.setDisplayName(row.number, text)
                onAccepted: row.page.saveNow(row.number)
            }
            TextInputField {
                id: notesField

                Layout.fillWidth: true
                Layout.preferredWidth: 360
                isBare: true
                activeFocusOnTab: row.isCurrent || row.activeFocus
                placeholderText: qsTr("Notes")
                accessibleName: placeholderText + ", " + row.displayName
                onTextChanged: row.page.setNotes(row.number, text)
                onAccepted: row.page.saveNow(row.number)
            }
            ActionButton {
                id: deleteButton

                activeFocusOnTab: row.isCurrent || row.activeFocus
                symbolName: "trash"
                helpText: qsTr("Delete")
                accessibleName: helpText + ", " + row.displayName
                isBare: true
                tone: hovered || visualFocus ? Theme.negative : Theme.secondary
                onClicked: row.page.deleteProfile(row.profileID)
            }
        }
        Flow {
            Layout.fillWidth: true
            Layout.leftMargin: enabledSwitch.width + Theme.small + nameField.leftPadding
            spacing: Theme.large

            Repeater {
                model: row.figures

                Row {
                    id: figure

                    required property var modelData

                    spacing: Theme.tight
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.helpText + ": " + modelData.text

                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: figure.modelData.iconName
                        size: Theme.bodySize
                        color: Theme.secondary
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: figure.modelData.text
                        textFormat: Text.PlainText
                        color: Theme.secondary
                        font.pixelSize: Theme.captionSize
                        Accessible.ignored: true
                    }
                    HoverHandler {
                        id: hover
                    }
                    ToolTipText {
                        shown: hover.hovered
                        text: figure.modelData.helpText
                    }
                }
            }
        }
    }
}
