// The main window: the sidebar, and beside it the page that is selected there.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

T.ApplicationWindow {
    id: window

    required property var app // MainWindowModel
    required property var preferences // Appearance
    required property var quit // QuitController
    property Item lastFocused
    property bool wasFocusShown: false

    title: "Corvane"
    width: 900
    height: 620
    minimumWidth: 900
    minimumHeight: 620
    color: Theme.window
    onActiveFocusItemChanged: {
        if (hasLostFocus())
            Qt.callLater(takeUpFocus);
        else
            rememberFocus();
    }
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    // What the keyboard was on goes with its page, or can no more be used after what was done by it. Somebody who sees
    // no window must not have to look for where the keyboard is now.
    function isOnPage(item) {
        while (item && item !== pages)
            item = item.parent;
        return item === pages;
    }
    function hasLostFocus() {
        const holder = activeFocusItem; // what only contains others, unless it is words that are selected
        return holder !== null && !holder.activeFocusOnTab && !(holder instanceof TextEdit) && isOnPage(holder);
    }
    function rememberFocus() {
        lastFocused = activeFocusItem;
        wasFocusShown = activeFocusItem !== null && activeFocusItem.visualFocus === true;
    }
    // Stays where it was, as near as it can, and begins no typing that nobody asked for.
    function takeUpFocus() {
        if (!hasLostFocus())
            return;
        let next = lastFocused && lastFocused.visible ? lastFocused.nextItemInFocusChain(false) : null;
        if (!isOnPage(next)) {
            next = pages.nextItemInFocusChain(true);
            if (next instanceof TextInput)
                next = next.nextItemInFocusChain(true);
        }
        next.forceActiveFocus(wasFocusShown ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    Binding {
        target: Theme
        property: "isDark"
        value: window.preferences.isDark
    }
    Binding {
        target: Theme
        property: "isMotionReduced"
        value: window.preferences.isMotionReduced
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            id: sidebar

            Layout.fillHeight: true
            Layout.preferredWidth: window.preferences.sidebarWidth
            Layout.minimumWidth: 240
            Layout.maximumWidth: 360
            sidebar: window.app.sidebar
            onRenameRequested: detail.editTitle()
            onShortcutsRequested: sheet.open()
        }
        Rectangle {
            Layout.fillHeight: true
            implicitWidth: Theme.hair
            color: Theme.line

            MouseArea {
                id: divider

                property real grabbedAt

                anchors.fill: parent
                anchors.leftMargin: -4
                anchors.rightMargin: -4
                cursorShape: Qt.SplitHCursor
                preventStealing: true
                onPressed: mouse => grabbedAt = mouse.x
                onPositionChanged: mouse => {
                    const moved = (mouse.x - grabbedAt) * (window.LayoutMirroring.enabled ? -1 : 1);
                    window.preferences.sidebarWidth = Math.max(240, Math.min(360, sidebar.width + moved));
                }
            }
        }
        FocusScope {
            id: pages

            Layout.fillWidth: true
            Layout.fillHeight: true

            MeetingDetail {
                id: detail

                anchors.fill: parent
                detail: window.app.detail
                visible: window.app.page === "meeting"
            }
            Loader {
                anchors.fill: parent
                active: window.app.page === "speakerProfiles"
                visible: active
                sourceComponent: SpeakerProfilesView {
                    page: window.app.speakerProfiles
                }
            }
            Loader {
                anchors.fill: parent
                active: window.visible && window.app.page === "settings"
                sourceComponent: SettingsView {
                    page: window.app.settings
                }
            }
        }
    }

    Instantiator {
        model: window.app.shortcuts.commands

        delegate: Shortcut {
            required property var modelData

            enabled: !window.app.isShowingSetupWizard
            sequences: modelData.keys
            onActivated: window.app.shortcuts.run(modelData.command)
        }
    }
    Connections {
        target: window.app.shortcuts
        function onRenameRequested() {
            sidebar.selectFocused();
            detail.editTitle();
        }
        function onMeetingListRequested() {
            sidebar.focusList();
        }
        function onNextPaneRequested() {
            if (pages.activeFocus)
                sidebar.focusList();
            else
                pages.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
        }
        function onSheetRequested() {
            sheet.open();
        }
    }
    ShortcutsSheet {
        id: sheet

        parent: T.Overlay.overlay
        sections: window.app.shortcuts.sections
    }
    SetupWizardView {
        parent: T.Overlay.overlay
        setup: window.app.setup
    }

    DropArea {
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => {
            window.app.importDropped(drop.urls);
            drop.accept(Qt.CopyAction);
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: Theme.small
            visible: parent.containsDrag
            radius: Theme.largeRadius
            color: Theme.tint(Theme.accent, Theme.hoverOpacity)
            border.width: 2
            border.color: Theme.accent
        }
    }

    QuitDialogs {
        quit: window.quit
        onCloseWanted: window.close()
    }
}
