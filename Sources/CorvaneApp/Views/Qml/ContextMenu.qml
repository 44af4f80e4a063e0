// A menu over the window.
import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: menu

    implicitWidth: 240
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
