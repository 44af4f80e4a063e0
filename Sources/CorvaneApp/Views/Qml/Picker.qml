// One choice of a few. `choices` have a text and a value; `value` is the one in force.
import QtQuick
import QtQuick.Templates as T

T.ComboBox {
    id: control

    required property var choices
    required property string value
    property string accessibleName
    property string helpText
    // A value that is none of the choices is in force all the same, and is shown as it is.
    readonly property string shownText: currentIndex < 0 ? value : displayText
    readonly property real markRoom: Theme.symbolSize + 2 * Theme.small
    signal picked(string value)

    model: choices
    textRole: "text"
    valueRole: "value"
    currentIndex: indexFor(value)
    implicitHeight: Theme.controlHeight
    implicitWidth: Math.max(120, Math.min(320, words.implicitWidth + leftPadding + rightPadding))
    leftPadding: mirrored ? markRoom : Theme.medium
    rightPadding: mirrored ? Theme.medium : markRoom
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabledOpacity

    function indexFor(wanted) {
        for (let i = 0; i < choices.length; ++i) {
            if (choices[i].value === wanted)
                return i;
        }
        return -1;
    }

    onActivated: index => {
        const chosen = choices[index].value;
        control.picked(chosen);
        // What is in force is the model's word, also where it refused.
        control.currentIndex = Qt.binding(() => control.indexFor(control.value));
    }

    Accessible.role: Accessible.ComboBox
    Accessible.name: accessibleName
    Accessible.description: shownText
    Accessible.focusable: true
    Accessible.onPressAction: {
        // The keys of the opened list go to the control.
        control.forceActiveFocus(Qt.OtherFocusReason);
        control.popup.open();
    }
    Keys.onReturnPressed: control.popup.open()

    contentItem: Text {
        id: words

        text: control.shownText
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.bodySize
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: control.mirrored ? Theme.small : control.width - width - Theme.small
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        color: Theme.secondary
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: Theme.field
        border.width: Theme.hair
        border.color: control.hovered ? Theme.controlLine : Theme.line

        FocusRing {
            control: control
        }
    }
    delegate: T.ItemDelegate {
        id: choice

        required property int index
        required property var modelData

        width: ListView.view ? ListView.view.width : implicitWidth
        implicitHeight: Theme.controlHeight
        highlighted: control.highlightedIndex === index
        hoverEnabled: true
        Accessible.role: Accessible.ListItem
        Accessible.name: modelData.text
        Accessible.selectable: true
        Accessible.selected: control.currentIndex === index
        Accessible.onPressAction: choice.clicked()

        contentItem: Text {
            leftPadding: Theme.small
            rightPadding: Theme.small
            text: choice.modelData.text
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.bodySize
            font.weight: control.currentIndex === choice.index ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: Theme.smallRadius
            color: choice.highlighted ? Theme.tint(Theme.accent, Theme.hoverOpacity) : "transparent"
        }
    }
    popup: T.Popup {
        y: control.height + Theme.tight
        width: Math.max(control.width, 160)
        height: Math.min(list.contentHeight + 2 * padding, 320)
        padding: Theme.tight
        margins: Theme.small

        contentItem: ListView {
            id: list

            clip: true
            implicitHeight: contentHeight
            model: control.popup.visible ? control.delegateModel : null
            currentIndex: control.highlightedIndex
            Accessible.role: Accessible.List
            Accessible.name: control.accessibleName
        }
        background: PopupSurface {
        }
    }
    ToolTipText {
        shown: control.hovered && !control.popup.visible
        text: control.helpText
    }
}
