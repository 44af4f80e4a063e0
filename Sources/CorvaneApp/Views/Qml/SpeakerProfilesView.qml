// The known people. One list, so that of thousands only what is on screen exists. Tab reaches one row of it, the
// current one; the arrow keys go from row to row.
import QtQuick
import QtQuick.Templates as T

FocusScope {
    id: root

    required property var page // SpeakerProfilesPageModel

    PageList {
        id: list

        readonly property int side: Math.max(Theme.wide, (width - Theme.wideColumnWidth) / 2)

        anchors.fill: parent
        model: root.page.profiles
        cacheBuffer: 200
        spacing: Theme.small
        Accessible.name: qsTr("Profiles")

        header: SpeakerProfilesHeader {
            x: list.side
            width: list.width - 2 * list.side
            page: root.page
            count: list.count
        }
        footer: Item {
            implicitHeight: Theme.vast
        }
        delegate: SpeakerProfileRow {
            x: list.side
            width: list.width - 2 * list.side
            page: root.page
        }
    }

    FocusFollower {
        view: list
    }

    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.page.isAskingDeletion
        title: qsTr("Delete speaker profile?")
        message: qsTr("This removes the local voice vectors and matching history attached to this profile.")
        answers: [{
                "text": qsTr("Delete"),
                "isProminent": true,
                "isDestructive": true
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => index === 0 ? root.page.confirmDeletion() : root.page.cancelDeletion()
    }
    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.page.showDeleteAllConfirmation
        title: qsTr("Delete all voice profiles?")
        message: qsTr("This removes all local voice profiles, stored vectors, and matching history.")
        answers: [{
                "text": qsTr("Delete All"),
                "isProminent": true,
                "isDestructive": true
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => index === 0 ? root.page.confirmDeleteAll() : root.page.cancelDeleteAll()
    }
}
