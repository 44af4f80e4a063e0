// A text that is read, not edited.
import QtQuick

Text {
    color: Theme.text
    font.pixelSize: Theme.bodySize
    linkColor: Theme.accent
    // As the window runs, whatever script a name is in.
    horizontalAlignment: Text.AlignLeft
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
