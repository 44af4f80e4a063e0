// The buttons below every page of the setup.
import QtQuick
import QtQuick.Layouts

RowLayout {
    id: bar

    required property var setup // SetupWizardModel
    readonly property var footer: setup.footer

    function takeFocus() {
        const main = bar.footer.hasFinish ? finish : goOn;
        main.forceActiveFocus(Qt.OtherFocusReason);
    }

    spacing: Theme.small
    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Setup")

    ActionButton {
        text: qsTr("Back")
        enabled: bar.footer.canGoBack
        onClicked: bar.setup.goBack()
    }
    Item {
        Layout.fillWidth: true
    }
    Row {
        spacing: Theme.small

        ActionButton {
            visible: bar.footer.hasClose
            text: qsTr("Close")
            onClicked: bar.setup.close()
        }
        ActionButton {
            // Unseen where it cannot be used, but in its place: the others stay where they are from page to page.
            visible: bar.footer.skipText !== ""
            opacity: bar.footer.canSkip ? 1 : 0
            enabled: bar.footer.canSkip
            Accessible.ignored: !bar.footer.canSkip
            text: bar.footer.skipText
            onClicked: bar.setup.completeStep()
        }
        ActionButton {
            id: goOn

            visible: bar.footer.hasContinue
            text: qsTr("Continue")
            isProminent: true
            onClicked: bar.setup.completeStep()
        }
        ActionButton {
            id: finish

            visible: bar.footer.hasFinish
            text: qsTr("Finish Setup")
            isProminent: true
            onClicked: bar.setup.finish()
        }
    }
}
