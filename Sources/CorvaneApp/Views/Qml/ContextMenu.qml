// A menu over the window.
import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: menu

    readonly property real widestItem: {
        let widest = 0;
        for (let i = 0; i < count; ++i)
            widest = Math.max(widest, itemAt(i) ? itemAt(i).implicitWidth : 0);
        return widest;
    }

    implicitWidth: Math.max(240, Math.min(420, widestItem + leftPadding + rightPadding))
    implicitHeight: Math.min(contentHeight, 420) + topPadding + bottomPadding
    padding: Theme.tight
    margins: Theme.small
    overlap: 1
    contentHeight: list.contentHeight

    contentItem: ListView {
        id: list

        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
        clip: true
        currentIndex: menu.currentIndex
        Accessible.role: Accessible.PopupMenu
        Accessible.name: menu.title
    }
    background: PopupSurface {
    }
}
