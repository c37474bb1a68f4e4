import QtQuick
import Velmora
import Velmora.Kit

// All tabs of the settings, under a bar that stays while they scroll.
Item {
    id: root
    required property SettingsModel model
    property int tab: 0

    readonly property int margin: 16

    implicitWidth: 420
    implicitHeight: page.y + page.contentHeight
    // One row of the tab can be seen.
    readonly property real minimumHeight: page.y + 72

    Row {
        id: tabBar
        anchors.horizontalCenter: parent.horizontalCenter
        y: root.margin
        spacing: 8
        Accessible.role: Accessible.PageTabList
        Accessible.name: I18n.t("Réglages Velmora")

        SettingsTabButton {
            objectName: "generalTabButton"
            symbol: "gearshape"
            label: I18n.t("Général")
            chosen: root.tab === 0
            onClicked: root.show(0)
        }
        SettingsTabButton {
            objectName: "audioTabButton"
            symbol: "slider.vertical.3"
            label: "Audio"
            chosen: root.tab === 1
            onClicked: root.show(1)
        }
        SettingsTabButton {
            objectName: "shortcutsTabButton"
            symbol: "keyboard"
            label: I18n.t("Raccourcis")
            chosen: root.tab === 2
            onClicked: root.show(2)
        }
    }
    ScrollArea {
        id: page
        objectName: "settingsPage"
        y: tabBar.y + tabBar.height + 10
        width: root.width
        height: root.height - y
        contentHeight: Math.max(general.implicitHeight, audio.implicitHeight, shortcuts.implicitHeight) + root.margin

        SettingsGeneralTab {
            id: general
            objectName: "generalTab"
            x: root.margin
            width: root.width - 2 * root.margin
            visible: root.tab === 0
            model: root.model
        }
        SettingsAudioTab {
            id: audio
            objectName: "audioTab"
            x: root.margin
            width: root.width - 2 * root.margin
            visible: root.tab === 1
            model: root.model
        }
        SettingsShortcutsTab {
            id: shortcuts
            objectName: "shortcutsTab"
            x: root.margin
            width: root.width - 2 * root.margin
            visible: root.tab === 2
            model: root.model.shortcuts
        }
    }

    function show(which: int) {
        tab = which;
        model.refresh();
    }
}
