// A symbol of the design by its name, in one colour. Says nothing to a screen reader: what it stands beside does.
import QtQuick

Image {
    id: symbol

    required property string name
    property color color: Theme.text
    property int size: Theme.symbolSize

    width: size
    height: size
    sourceSize.width: size
    sourceSize.height: size
    source: name === "" ? "" : "image://symbol/" + name + "/" + symbol.color.toString().slice(1)
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
