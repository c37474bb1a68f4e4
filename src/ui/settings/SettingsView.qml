import QtQuick
import Velmora
import Velmora.Kit

// Both tabs of the settings.
Item {
    id: root
    required property SettingsModel model
    property int tab: 0

    readonly property int margin: 16

    implicitWidth: 420
    implicitHeight: tabs.y + tabs.implicitHeight + 2 * margin

    Column {
        id: content
        x: root.margin
        y: root.margin
        width: root.width - 2 * root.margin
        spacing: 10

        Row {
            id: tabBar
            anchors.horizontalCenter: parent.horizontalCenter
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
        }
        Item {
            id: tabs
            width: parent.width
            implicitHeight: Math.max(general.implicitHeight, audio.implicitHeight)

            SettingsGeneralTab {
                id: general
                objectName: "generalTab"
                width: parent.width
                visible: root.tab === 0
                model: root.model
            }
            SettingsAudioTab {
                id: audio
                objectName: "audioTab"
                width: parent.width
                visible: root.tab === 1
                model: root.model
            }
        }
    }

    function show(which: int) {
        tab = which;
        model.refresh();
    }
}
