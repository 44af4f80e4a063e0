// What the keyboard can do.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.Dialog {
    id: sheet

    required property var sections // ShortcutSection

    title: qsTr("Keyboard Shortcuts")
    modal: true
    focus: true
    anchors.centerIn: parent
    width: Math.min(Theme.sheetWidth, (parent ? parent.width : Theme.sheetWidth) - 2 * Theme.large)
    height: Math.min(implicitHeight, (parent ? parent.height : implicitHeight) - 2 * Theme.large)
    padding: Theme.wide
    implicitHeight: column.implicitHeight + 2 * padding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onOpened: closeButton.forceActiveFocus(Qt.TabFocusReason)

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: PopupSurface {
        radius: Theme.largeRadius
    }
    contentItem: FocusScope {
        Keys.onEscapePressed: sheet.close()
        Keys.onUpPressed: flick.scroll(-1)
        Keys.onDownPressed: flick.scroll(1)

        ColumnLayout {
            id: column

            anchors.fill: parent
            spacing: Theme.large

            RowLayout {
                Layout.fillWidth: true

                SectionHeading {
                    Layout.fillWidth: true
                    text: sheet.title
                }
                ActionButton {
                    id: closeButton

                    symbolName: "xmark"
                    accessibleName: qsTr("Close")
                    isBare: true
                    onClicked: sheet.close()
                }
            }
            Flickable {
                id: flick

                function scroll(direction) {
                    contentY = Math.max(0, Math.min(contentHeight - height, contentY + direction * Theme.controlHeight));
                }

                Layout.fillWidth: true
                Layout.fillHeight: true
                implicitHeight: grid.implicitHeight
                contentHeight: grid.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                T.ScrollBar.vertical: ScrollLine {
                }

                // Two columns that the eye can run down: the sections one below the other in each.
                RowLayout {
                    id: grid

                    width: flick.width
                    spacing: Theme.vast

                    Repeater {
                        model: [sheet.sections.slice(0, 2).concat(sheet.sections.slice(5)), sheet.sections.slice(2, 5)]

                        ColumnLayout {
                            id: half

                            required property var modelData

                            Layout.fillWidth: true
                            Layout.preferredWidth: 1
                            Layout.alignment: Qt.AlignTop
                            spacing: Theme.large

                            Repeater {
                                model: half.modelData

                                ShortcutSectionView {
                                    required property var modelData

                                    Layout.fillWidth: true
                                    section: modelData
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
