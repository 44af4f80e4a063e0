import QtQuick
import QtQuick.Templates as T

T.MenuSeparator {
    padding: Theme.tight
    implicitHeight: Theme.small + Theme.hair
    implicitWidth: 100
    contentItem: Rectangle {
        implicitHeight: Theme.hair
        color: Theme.line
    }
}
