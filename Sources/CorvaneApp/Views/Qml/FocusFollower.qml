// Brings what the keyboard reaches into view, and keeps a view at its top where it is when what is above it grows.
import QtQuick

Item {
    id: follower

    required property Flickable view
    property bool isAtTop: true

    visible: false

    function holds(item) {
        while (item && item !== view.contentItem)
            item = item.parent;
        return item === view.contentItem;
    }
    function show(item) {
        const top = item.mapToItem(view, 0, 0).y - Theme.vast;
        const bottom = item.mapToItem(view, 0, item.height).y + Theme.vast;
        const lowest = Math.max(view.originY, view.originY + view.contentHeight - view.height);
        if (top < 0)
            view.contentY = Math.max(view.originY, view.contentY + top);
        else if (bottom > view.height)
            view.contentY = Math.min(lowest, view.contentY + bottom - view.height);
    }

    Connections {
        target: follower.view.Window.window
        function onActiveFocusItemChanged() {
            const item = follower.view.Window.activeFocusItem;
            // Words that are selected by the mouse are in view already.
            if (item && item.activeFocusOnTab && follower.holds(item))
                follower.show(item);
        }
    }
    Connections {
        target: follower.view
        function onContentYChanged() {
            follower.isAtTop = follower.view.contentY <= follower.view.originY;
        }
        function onOriginYChanged() {
            if (follower.isAtTop)
                follower.view.contentY = follower.view.originY;
        }
    }
}
