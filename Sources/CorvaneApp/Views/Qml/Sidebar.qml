// The meetings, and the two pages that belong to none.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

Rectangle {
    id: root

    required property var sidebar // SidebarModel
    signal renameRequested
    signal shortcutsRequested

    function focusList() {
        list.forceActiveFocus(Qt.ShortcutFocusReason);
    }
    // The meeting that the keyboard is on becomes the one that is shown.
    function selectFocused() {
        if (list.activeFocus && list.currentItem)
            (list.currentItem as SidebarItemRow).select();
    }

    color: Theme.sidebar

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: Theme.medium
            Layout.leftMargin: Theme.large

            Label {
                Layout.fillWidth: true
                text: qsTr("Meetings")
                color: Theme.secondary
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            ActionButton {
                symbolName: "keyboard"
                helpText: qsTr("Keyboard shortcuts")
                isBare: true
                tone: Theme.secondary
                onClicked: root.shortcutsRequested()
            }
            ActionButton {
                symbolName: "arrow.clockwise"
                helpText: qsTr("Refresh meetings")
                isBare: true
                tone: Theme.secondary
                onClicked: root.sidebar.reload()
            }
        }
        ListView {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: root.sidebar.meetings
            reuseItems: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightMoveDuration: 0
            currentIndex: -1
            boundsBehavior: Flickable.StopAtBounds
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Meetings")
            T.ScrollBar.vertical: ScrollLine {
            }

            // The keyboard begins where the user looks: at the meeting that is shown.
            onActiveFocusChanged: {
                if (activeFocus && currentIndex < 0)
                    currentIndex = Math.max(0, root.sidebar.selectedRow());
            }
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Home)
                    currentIndex = Math.min(0, count - 1);
                else if (event.key === Qt.Key_End)
                    currentIndex = count - 1;
                else if (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier && currentItem)
                    (currentItem as SidebarItemRow).openMenu();
                else
                    return;
                event.accepted = true;
            }
            Keys.onReturnPressed: (currentItem as SidebarItemRow)?.select()
            Keys.onEnterPressed: (currentItem as SidebarItemRow)?.select()
            Keys.onSpacePressed: (currentItem as SidebarItemRow)?.select()
            Keys.onMenuPressed: (currentItem as SidebarItemRow)?.openMenu()
            Keys.onDeletePressed: if (currentItem)
                root.sidebar.deleteMeeting((currentItem as SidebarItemRow).meetingID)

            // With no meeting to choose, the page with the controls for the first one is still a click away.
            SidebarFooterRow {
                width: parent.width
                visible: list.count === 0
                entry: ({
                        "title": qsTr("Ready for a meeting"),
                        "iconName": "record.circle",
                        "isSelected": !root.sidebar.footerButtons.some(button => button.isSelected),
                        "badgeText": ""
                    })
                onClicked: root.sidebar.selectNoMeeting()
            }

            delegate: SidebarItemRow {
                width: ListView.view.width
                onPicked: root.sidebar.selectMeeting(meetingID)
                onMenuWanted: position => menu.openFor(meetingID, position)
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Theme.hair
            color: Theme.line
        }
        Repeater {
            // Their number, so that one that is pressed stays the same one and keeps the keyboard.
            model: root.sidebar.footerButtons.length

            SidebarFooterRow {
                required property int index

                Layout.fillWidth: true
                Layout.topMargin: Theme.tight
                Layout.bottomMargin: Theme.tight
                entry: root.sidebar.footerButtons[index]
                onClicked: root.sidebar.selectFooterItem(entry.item)
            }
        }
    }

    ContextMenu {
        id: menu

        property string meetingID

        title: qsTr("Meeting")

        function openFor(wanted, position) {
            meetingID = wanted;
            const place = root.mapFromItem(null, position.x, position.y);
            menu.popup(root, place.x, place.y);
        }

        ContextMenuItem {
            text: qsTr("Rename")
            onTriggered: {
                root.sidebar.selectMeeting(menu.meetingID);
                root.renameRequested();
            }
        }
        ContextMenuItem {
            text: qsTr("Show in File Manager")
            onTriggered: root.sidebar.showInFileManager(menu.meetingID)
        }
        ContextMenuItem {
            text: qsTr("Delete")
            symbolName: "trash"
            isDestructive: true
            onTriggered: root.sidebar.deleteMeeting(menu.meetingID)
        }
    }

    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.sidebar.isAskingDeletion
        title: qsTr("Delete meeting?")
        message: qsTr("This removes this meeting's processing runs and its local app recording when available.")
        answers: [{
                "text": qsTr("Delete"),
                "isProminent": true,
                "isDestructive": true
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => index === 0 ? root.sidebar.confirmDeletion() : root.sidebar.cancelDeletion()
    }
}
