// A page as one list: what is above the rows is its header.
import QtQuick
import QtQuick.Templates as T

ListView {
    id: list

    property bool isAtTop: true

    function showTop() {
        isAtTop = true;
        positionViewAtBeginning();
    }

    clip: true
    reuseItems: true
    highlightMoveDuration: 0
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    // A header that grows grows upwards, out of sight: whoever looks at the top goes on looking at it.
    onContentYChanged: isAtTop = atYBeginning
    onOriginYChanged: if (isAtTop)
        positionViewAtBeginning()
    Accessible.role: Accessible.List
    T.ScrollBar.vertical: ScrollLine {
    }
}
