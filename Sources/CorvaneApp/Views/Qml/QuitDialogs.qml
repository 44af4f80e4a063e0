// What the window shows on the way out, and the two keys that lead there.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

Item {
    id: root

    required property var quit // QuitController
    signal closeWanted

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: root.quit.requestQuit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.closeWanted()
    }

    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.quit.isAsking
        title: qsTr("Quit while recording?")
        message: qsTr("The recording is stopped and saved before Corvane quits. It can be transcribed later.")
        answers: [{
                "text": qsTr("Stop Recording and Quit"),
                "isDestructive": true
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => {
            if (index === 0)
                root.quit.stopAndQuit();
            else
                root.quit.cancel();
        }
    }
    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.quit.isFinishing
        title: qsTr("Finishing the recording")
        message: qsTr("Corvane quits when the recording is saved.")
        answers: [{
                "text": qsTr("Do Not Quit")
            }]
        onAnswered: root.quit.cancel()

        ProgressLine {
            Layout.fillWidth: true
            accessibleName: qsTr("Finishing the recording")
            value: root.quit.progress
        }
    }
    AlertDialog {
        parent: T.Overlay.overlay
        visible: root.quit.hasFailed
        title: qsTr("The recording could not be finished")
        message: qsTr("Everything recorded so far is kept, and can be recovered when Corvane is started again.")
        answers: [{
                "text": qsTr("Quit Anyway")
            }, {
                "text": qsTr("Cancel")
            }]
        onAnswered: index => {
            if (index === 0)
                root.quit.quitAnyway();
            else
                root.quit.cancel();
        }
    }
}
