// A turn of the transcript: when, who, what.
import QtQuick

FocusScope {
    id: row

    required property int index
    required property double startSeconds
    required property string timestampText
    required property string timestampHelp
    required property bool canPlay
    required property string speakerName
    required property string turnText
    property bool isPlayed: false
    property bool isTabStop: false
    signal playRequested
    signal copyRequested

    implicitHeight: words.y + words.implicitHeight + Theme.tight
    activeFocusOnTab: isTabStop
    Accessible.role: Accessible.ListItem
    Accessible.name: timestampText + ", " + speakerName + ": " + turnText
    Accessible.focusable: true
    Accessible.onPressAction: if (canPlay)
        playRequested()
    Keys.onReturnPressed: if (canPlay)
        playRequested()
    Keys.onEnterPressed: if (canPlay)
        playRequested()
    Keys.onSpacePressed: if (canPlay)
        playRequested()
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            row.copyRequested();
            event.accepted = true;
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -Theme.tight
        anchors.leftMargin: -Theme.small
        anchors.rightMargin: -Theme.small
        radius: Theme.smallRadius
        color: Theme.tint(Theme.accent, 0.12)
        visible: row.isPlayed
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -Theme.tight
        anchors.leftMargin: -Theme.small
        anchors.rightMargin: -Theme.small
        radius: Theme.smallRadius
        color: "transparent"
        border.width: Theme.focusWidth
        border.color: Theme.accent
        visible: row.activeFocus && !words.activeFocus
    }
    Text {
        id: time

        anchors.left: parent.left
        y: speaker.y + speaker.baselineOffset - baselineOffset
        text: row.timestampText
        color: row.canPlay ? Theme.accent : Theme.secondary
        font.pixelSize: Theme.captionSize
        font.family: Theme.monospace
        font.underline: row.canPlay
        Accessible.role: Accessible.Button
        Accessible.name: row.timestampHelp
        Accessible.onPressAction: if (row.canPlay)
            row.playRequested()

        HoverHandler {
            id: hover

            enabled: row.canPlay
            cursorShape: Qt.PointingHandCursor
        }
        TapHandler {
            enabled: row.canPlay
            onTapped: row.playRequested()
        }
        ToolTipText {
            shown: hover.hovered
            text: row.timestampHelp
        }
    }
    Text {
        id: speaker

        anchors.left: time.right
        anchors.leftMargin: Theme.small
        anchors.right: parent.right
        text: row.speakerName
        textFormat: Text.PlainText
        color: Theme.text
        font.pixelSize: Theme.bodySize
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    SelectableText {
        id: words

        anchors.left: parent.left
        anchors.right: parent.right
        y: speaker.height + 3
        text: row.turnText
        font.pixelSize: Theme.bodySize
    }
}
