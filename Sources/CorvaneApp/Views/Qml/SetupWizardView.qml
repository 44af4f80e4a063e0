// The setup as a sheet over the window: its steps at the left, the page, and the buttons below. Before the setup has
// been finished once, nothing but its last button closes it.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.Dialog {
    id: sheet

    required property var setup // SetupWizardModel

    title: qsTr("Setup")
    visible: setup.isShowingSetupWizard
    modal: true
    focus: true
    anchors.centerIn: parent
    width: Math.min(Theme.sheetWidth, (parent ? parent.width : 0) - 2 * Theme.wide)
    height: Math.min(Theme.sheetHeight, (parent ? parent.height : 0) - 2 * Theme.large)
    padding: Theme.medium
    closePolicy: T.Popup.NoAutoClose

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: PopupSurface {
        radius: Theme.largeRadius
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.calm
        }
    }

    contentItem: FocusScope {
        // The keys that no control takes.
        Keys.onReturnPressed: sheet.goOn()
        Keys.onEnterPressed: sheet.goOn()
        Keys.onEscapePressed: sheet.setup.close()

        RowLayout {
            anchors.fill: parent
            spacing: Theme.medium

            SetupStepList {
                Layout.fillHeight: true
                Layout.preferredWidth: Theme.stepListWidth
                steps: sheet.setup.steps
            }
            ColumnLayout {
                spacing: 0

                Flickable {
                    id: scroll

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    clip: true
                    contentHeight: page.implicitHeight + 2 * Theme.medium
                    boundsBehavior: Flickable.StopAtBounds
                    T.ScrollBar.vertical: ScrollLine {
                    }

                    FocusFollower {
                        view: scroll
                    }
                    Loader {
                        id: page

                        x: Theme.medium
                        y: Theme.medium
                        width: scroll.width - 2 * Theme.medium
                        active: sheet.visible
                        sourceComponent: sheet.pages[sheet.setup.step]
                        onLoaded: {
                            scroll.contentY = 0;
                            footer.takeFocus();
                        }
                    }
                }
                Rectangle {
                    Layout.fillWidth: true
                    implicitHeight: Theme.hair
                    color: Theme.line
                }
                SetupFooterBar {
                    id: footer

                    Layout.fillWidth: true
                    Layout.topMargin: Theme.medium
                    Layout.leftMargin: Theme.medium
                    setup: sheet.setup
                }
            }
        }
    }

    onOpened: footer.takeFocus()

    function goOn() {
        if (setup.footer.hasFinish)
            setup.finish();
        else
            setup.completeStep();
    }

    readonly property var pages: ({
            "welcome": welcomePage,
            "huggingFace": huggingFacePage,
            "ollama": ollamaPage,
            "dependencies": toolsPage,
            "finish": finishPage
        })
    readonly property Component welcomePage: SetupWelcomePage {
    }
    readonly property Component huggingFacePage: SetupHuggingFacePage {
        setup: sheet.setup
    }
    readonly property Component ollamaPage: SetupOllamaPage {
        setup: sheet.setup
    }
    readonly property Component toolsPage: SetupToolsPage {
        setup: sheet.setup
    }
    readonly property Component finishPage: SetupFinishPage {
    }
}
