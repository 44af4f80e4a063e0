// Scrolls a view to what the keyboard reaches within it.
import QtQuick

Connections {
    id: follower

    required property Flickable view

    target: view.Window.window

    function onActiveFocusItemChanged() {
        const item = view.Window.activeFocusItem;
        if (item && isWithin(item))
            show(item.mapToItem(view.contentItem, 0, 0).y, item.height);
    }
    function isWithin(item) {
        for (let parent = item.parent; parent; parent = parent.parent) {
            if (parent === view.contentItem)
                return true;
        }
        return false;
    }
    function show(y, height) {
        const top = y - Theme.vast;
        const bottom = y + height + Theme.vast;
        if (top < view.contentY)
            view.contentY = Math.max(0, top);
        else if (bottom > view.contentY + view.height)
            view.contentY = Math.min(Math.max(0, view.contentHeight - view.height), bottom - view.height);
    }
}
