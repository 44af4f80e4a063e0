// The shown meeting: its panels in one column with the transcript, and the controls that float at the bottom. One list,
// so that of a transcript of thousands of turns only what is on screen exists.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

FocusScope {
    id: root

    required property var detail // MeetingDetailModel

    function editTitle() {
        (list.headerItem as MeetingHeader).editTitle();
    }

    PageList {
        id: list

        readonly property int side: Math.max(Theme.wide, (width - Theme.columnWidth) / 2)
        // The one row that Tab reaches: where the keyboard was last, or the first on screen.
        readonly property int tabStop: currentIndex >= 0 ? currentIndex : Math.max(0, indexAt(side + 1, contentY + 1), indexAt(side + 1, contentY + spacing + 1))

        function moveTo(row) {
            currentIndex = Math.max(0, Math.min(count - 1, row));
            currentItem.forceActiveFocus(Qt.TabFocusReason);
        }

        anchors.fill: parent
        anchors.bottomMargin: controls.height
        model: root.detail.transcript.rows
        cacheBuffer: 400
        spacing: Theme.large
        currentIndex: -1
        Accessible.name: root.detail.transcript.title

        header: MeetingHeader {
            x: list.side
            width: list.width - 2 * list.side
            detail: root.detail
        }
        footer: Item {
            implicitHeight: Theme.vast
        }
        delegate: TranscriptRow {
            x: list.side
            width: list.width - 2 * list.side
            isPlayed: root.detail.transcript.playedRow === index
            isTabStop: list.tabStop === index || activeFocus
            onActiveFocusChanged: {
                if (activeFocus) {
                    list.currentIndex = index;
                    list.positionViewAtIndex(index, ListView.Contain);
                }
            }
            Keys.onUpPressed: list.moveTo(index - 1)
            Keys.onDownPressed: list.moveTo(index + 1)
            onCopyRequested: root.detail.transcript.copyTurn(index)
            onPlayRequested: root.detail.playFrom(startSeconds)
        }

        Connections {
            target: root.detail
            function onShownMeetingChanged() {
                list.showTop();
            }
        }
        Connections {
            target: root.detail.transcript
            function onPlayedRowChanged() {
                const row = root.detail.transcript.playedRow;
                if (row >= 0 && !list.moving)
                    list.positionViewAtIndex(row, ListView.Contain);
            }
        }
    }

    FocusFollower {
        view: list
    }

    FloatingControls {
        id: controls

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        detail: root.detail
        side: list.side
    }

    Toast {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: controls.top
        anchors.bottomMargin: Theme.medium
        maximumWidth: parent.width - 2 * Theme.wide
        isShown: root.detail.isToastShown
        message: root.detail.toastMessage
        isError: root.detail.isToastError
    }

    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.detail.isAskingNotionReplacement
        title: qsTr("Notion page already exists")
        message: qsTr("A page for this meeting ID was found in the configured Notion database.")
        answers: [{
                "text": qsTr("Replace"),
                "isProminent": true
            }, {
                "text": qsTr("Create New")
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => {
            if (index === 0)
                root.detail.replaceNotionPage();
            else if (index === 1)
                root.detail.createNewNotionPage();
            else
                root.detail.dismissNotionReplacement();
        }
    }
}
