// The recording that is under way, or that waits to be finished.
import QtQuick
import QtQuick.Layouts

Card {
    id: card

    required property var panel // InProgressPanel
    signal pressed(int action)

    border.color: panel.isRecording ? Theme.negative : Theme.line

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.medium

        Rectangle {
            implicitWidth: Theme.medium
            implicitHeight: implicitWidth
            radius: width / 2
            color: card.panel.isRecording ? Theme.negative : Theme.secondary

            SequentialAnimation on opacity  {
                running: card.visible && card.panel.isRecording && !Theme.isMotionReduced
                loops: Animation.Infinite
                alwaysRunToEnd: true

                OpacityAnimator {
                    from: 1
                    to: 0.35
                    duration: 900
                }
                OpacityAnimator {
                    from: 0.35
                    to: 1
                    duration: 900
                }
            }
        }
        Label {
            Layout.fillWidth: true
            text: card.panel.title
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
        Label {
            text: card.panel.elapsedText
            font.pixelSize: Theme.headlineSize
            color: Theme.secondary
        }
    }
    ButtonRow {
        Layout.fillWidth: true
        buttons: card.panel.buttons
        onPressed: action => card.pressed(action)
    }
}
