import QtQuick
import Velmora
import Velmora.Kit

// Monitoring output, DAW mode, and where the effects are.
Column {
    id: root
    required property SettingsModel model

    spacing: 10

    Card {
        width: parent.width

        SettingsRow {
            title: "Monitoring"

            GumDropdown {
                objectName: "monitoringMenu"
                width: 230
                name: "Monitoring"
                options: root.model.monitoringOptions
                current: root.model.monitoring
                onPicked: tag => root.model.monitoring = tag
            }
        }
    }
    Card {
        width: parent.width

        SettingsRow {
            title: "Mode DAW"

            Row {
                spacing: 12

                GumDropdown {
                    objectName: "dawInterfaceMenu"
                    width: 182
                    name: I18n.t("Interface du mode DAW")
                    options: root.model.dawInterfaceOptions
                    current: root.model.dawInterface
                    onPicked: tag => root.model.dawInterface = tag
                }
                GumSwitch {
                    objectName: "dawSwitch"
                    anchors.verticalCenter: parent.verticalCenter
                    name: "Mode DAW"
                    tip: I18n.t("Un appareil pour ton logiciel audio : l'interface choisie et le micro virtuel ensemble")
                    checked: root.model.dawEnabled
                    onToggled: root.model.dawEnabled = !root.model.dawEnabled
                }
            }
        }
        SettingsNote {
            objectName: "dawError"
            text: root.model.dawError
        }
    }
    Card {
        width: parent.width

        GumText {
            width: parent.width
            height: 26
            text: I18n.t("Effets par source (EQ, comp., reverb)")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
        GumText {
            objectName: "effectsNote"
            width: parent.width
            horizontalAlignment: Text.AlignRight
            text: I18n.t("Sur chaque tranche source")
            size: 12
            color: Theme.soft
            textFormat: Text.PlainText
        }
    }
    GumText {
        objectName: "blocksNote"
        width: parent.width
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        text: root.model.blocks
        size: 12
        color: Theme.soft
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
}
