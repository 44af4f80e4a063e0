// One voice: hear it, see who it may be, name it.
import QtQuick
import QtQuick.Layouts

Card {
    id: card

    required property var speakers // SpeakerReviewModel
    required property var playButton
    required property string title
    required property string speaker
    required property string durationText
    required property var link
    required property var name
    required property var context
    required property var status

    // What belongs to the voice stands under its name, beside the button.
    readonly property int indent: Theme.controlHeight + Theme.medium

    spacing: Theme.small
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.medium

        ActionButton {
            symbolName: card.playButton.iconName
            accessibleName: card.playButton.accessibilityLabel
            enabled: card.playButton.isEnabled
            isRound: true
            tone: Theme.accent
            onClicked: card.speakers.toggleExamples(card.speaker)
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                Layout.fillWidth: true
                text: card.title
                font.pixelSize: Theme.headlineSize
                font.weight: Font.DemiBold
            }
            RowLayout {
                spacing: Theme.small

                Label {
                    text: card.speaker
                    color: Theme.secondary
                    font.pixelSize: Theme.captionSize
                    font.family: Theme.monospace
                }
                Label {
                    text: card.durationText
                    color: Theme.secondary
                    font.pixelSize: Theme.captionSize
                }
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: card.indent
        visible: card.link.isShown
        spacing: Theme.small

        Symbol {
            name: card.link.iconName
            color: Theme.accent
        }
        Label {
            Layout.fillWidth: true
            text: card.link.text
        }
        Repeater {
            model: card.link.buttons

            ActionButton {
                required property var modelData

                text: modelData.text
                symbolName: modelData.iconName
                helpText: modelData.helpText
                isBare: modelData.text === ""
                tone: isBare && !hovered ? Theme.secondary : Theme.text
                onClicked: card.speakers.press(card.speaker, modelData.action)
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: card.indent
        visible: card.name !== undefined
        spacing: Theme.small

        Label {
            text: card.name ? card.name.label : ""
            color: Theme.secondary
            Accessible.ignored: true
        }
        TextInputField {
            id: nameField

            readonly property string stored: card.name ? card.name.text : ""

            Layout.fillWidth: true
            Layout.maximumWidth: 360
            placeholderText: card.name ? card.name.placeholder : ""
            accessibleName: card.name ? card.name.label + ", " + card.speaker : ""
            text: stored
            onTextEdited: card.speakers.setName(card.speaker, text)
            onStoredChanged: if (text !== stored)
                text = stored
        }
        ActionButton {
            id: profiles

            text: card.name ? card.name.profileMenu.text : ""
            symbolName: card.name ? card.name.profileMenu.iconName : ""
            helpText: card.name ? card.name.profileMenu.helpText : ""
            enabled: card.name ? card.name.profileMenu.isEnabled : false
            isOpen: menu.visible
            Accessible.role: Accessible.ButtonMenu
            onClicked: menu.popup(profiles, 0, profiles.height + Theme.tight)

            ContextMenu {
                id: menu

                title: profiles.text

                Instantiator {
                    model: card.speakers.profileMenu
                    delegate: ContextMenuItem {
                        required property int index
                        required property var modelData

                        isDivider: modelData.isDivider
                        text: modelData.title
                        enabled: modelData.isEnabled && !modelData.isDivider
                        onTriggered: card.speakers.chooseFromProfileMenu(card.speaker, index)
                    }
                    onObjectAdded: (index, object) => menu.insertItem(index, object)
                    onObjectRemoved: (index, object) => menu.removeItem(object)
                }
            }
        }
        Item {
            Layout.fillWidth: true
        }
    }
    Disclosure {
        id: context

        Layout.fillWidth: true
        Layout.leftMargin: card.indent
        visible: card.context !== undefined
        title: card.context ? card.context.title : ""
        onToggled: expanded => {
            context.isExpanded = expanded;
            if (expanded)
                card.speakers.panel.openSpeakerContext(card.speaker);
            else
                card.speakers.panel.closeSpeakerContext(card.speaker);
        }
        Component.onCompleted: isExpanded = card.speakers.panel.isSpeakerContextOpen(card.speaker)

        Repeater {
            model: card.context ? card.context.texts : []

            Label {
                required property string modelData

                Layout.fillWidth: true
                text: modelData
            }
        }
        Repeater {
            model: card.context ? card.context.notableLines : []

            SelectableText {
                required property string modelData

                Layout.fillWidth: true
                text: modelData
                color: Theme.secondary
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: card.indent
        visible: card.status !== undefined
        spacing: Theme.small

        Spinner {
            visible: card.status ? card.status.isRunning : false
        }
        Symbol {
            visible: name !== ""
            name: card.status ? card.status.iconName : ""
            color: card.status && card.status.isFailure ? Theme.negative : Theme.positive
        }
        Label {
            Layout.fillWidth: true
            text: card.status ? card.status.text : ""
            color: card.status && card.status.isFailure ? Theme.negative : Theme.secondary
            maximumLineCount: 2
            elide: Text.ElideRight
        }
    }
}
