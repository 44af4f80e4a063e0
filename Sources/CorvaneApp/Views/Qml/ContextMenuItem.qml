import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.MenuItem {
    id: item

    property string symbolName
    property bool isDestructive: false
    property bool isDivider: false // a line between others, which cannot be reached
    readonly property color tone: isDestructive ? Theme.negative : Theme.text

    implicitHeight: !visible ? 0 : isDivider ? Theme.small + Theme.hair : Theme.controlHeight
    implicitWidth: row.implicitWidth + 2 * Theme.small
    leftPadding: Theme.small
    rightPadding: Theme.small
    opacity: enabled || isDivider ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    activeFocusOnTab: enabled

    Accessible.role: isDivider ? Accessible.Separator : Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: {
        item.menu?.dismiss();
        item.triggered();
    }

    contentItem: RowLayout {
        id: row

        spacing: Theme.small
        visible: !item.isDivider

        Symbol {
            visible: item.symbolName !== ""
            name: item.symbolName
            color: item.tone
        }
        Text {
            Layout.fillWidth: true
            text: item.text
            textFormat: Text.PlainText
            color: item.tone
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: item.highlighted && item.enabled ? Theme.tint(Theme.accent, Theme.hoverOpacity) : "transparent"

        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: item.isDivider
            height: Theme.hair
            color: Theme.line
        }
    }
}
