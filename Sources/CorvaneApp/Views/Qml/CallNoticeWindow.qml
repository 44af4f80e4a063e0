// The question whether to record a call. It comes down from above the screen's edge and never asks for the keyboard.
import QtQuick
import QtQuick.Layouts
import QtQuick.Window

Window {
    id: window

    required property var notice // CallNoticePanel
    required property rect frame
    required property bool isComposited
    required property bool isDark
    required property bool isMotionReduced

    title: notice.title
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.WindowDoesNotAcceptFocus | Qt.BypassWindowManagerHint
    color: isComposited ? "transparent" : Theme.surface
    x: frame.x
    y: isMotionReduced ? frame.y : frame.y - Theme.noticeSlide
    width: frame.width
    height: frame.height
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Binding {
        target: Theme
        property: "isDark"
        value: window.isDark
    }
    Binding {
        target: Theme
        property: "isMotionReduced"
        value: window.isMotionReduced
    }

    NumberAnimation on y  {
        running: window.visible && !window.isMotionReduced
        from: window.frame.y - Theme.noticeSlide
        to: window.frame.y
        duration: Theme.noticeDuration
        easing.type: Easing.OutCubic
    }

    Rectangle {
        anchors.fill: parent
        // Appears with the window, so that a screen reader is told of something new.
        visible: window.visible
        radius: window.isComposited ? Theme.noticeRadius : 0
        color: Theme.surface
        border.width: Theme.hair
        border.color: Theme.line
        Accessible.role: Accessible.Notification
        Accessible.name: window.notice.title + " " + window.notice.subtitle

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: Theme.large
            anchors.rightMargin: Theme.large
            spacing: Theme.medium

            Item {
                implicitWidth: Theme.noticeSymbolFrame
                implicitHeight: Theme.noticeSymbolFrame

                Symbol {
                    anchors.centerIn: parent
                    name: "waveform.circle.fill"
                    size: Theme.noticeSymbolSize
                    color: Theme.accent
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: Theme.tight

                Label {
                    Layout.fillWidth: true
                    text: window.notice.title
                    font.pixelSize: Theme.headlineSize
                    font.weight: Font.DemiBold
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                }
                Label {
                    Layout.fillWidth: true
                    text: window.notice.subtitle
                    color: Theme.secondary
                    font.pixelSize: Theme.noticeTextSize
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                }
            }
            Repeater {
                model: window.notice.buttons

                ActionButton {
                    required property var modelData

                    text: modelData.text
                    symbolName: modelData.iconName
                    isProminent: modelData.isProminent
                    isDestructive: modelData.isProminent
                    onClicked: window.notice.answer(modelData.action)
                }
            }
        }
    }
}
