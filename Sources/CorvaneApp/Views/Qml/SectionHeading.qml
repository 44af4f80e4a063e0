// Begins a section of a page.
import QtQuick

Label {
    font.pixelSize: Theme.titleSize
    font.weight: Font.DemiBold
    Accessible.role: Accessible.Heading
}
