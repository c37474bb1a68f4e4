import QtQuick
import Velmora
import Velmora.Kit

// Keys on the whole desktop, and push to talk; a line where the desktop has none to give.
Column {
    id: root
    required property ShortcutsModel model

    spacing: 10

    Card {
        width: parent.width
        visible: !root.model.offered

        GumText {
            objectName: "shortcutsElsewhere"
            width: parent.width
            text: I18n.t("Chaque commande de Velmora (« velmora --help ») peut avoir sa touche dans les réglages du clavier du bureau.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    Card {
        width: parent.width
        visible: root.model.offered

        SettingsRow {
            title: I18n.t("Raccourcis sur tout le bureau")

            GumSwitch {
                objectName: "shortcutsSwitch"
                name: I18n.t("Raccourcis sur tout le bureau")
                checked: root.model.used
                onToggled: root.model.used = !root.model.used
            }
        }
        GumText {
            objectName: "shortcutsAsking"
            width: parent.width
            visible: root.model.asking
            bottomPadding: 6
            size: 12
            color: Theme.soft
            text: I18n.t("Le bureau demande quelles touches utiliser.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
        SettingsNote {
            objectName: "shortcutsError"
            text: root.model.error
        }
        Repeater {
            model: root.model.keys

            Item {
                id: row
                required property var modelData

                objectName: "shortcut"
                width: parent.width
                implicitHeight: 24
                Accessible.role: Accessible.StaticText
                Accessible.name: row.modelData.does + " — " + trigger.text

                GumText {
                    anchors.left: parent.left
                    anchors.right: trigger.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.does
                    size: 12
                    color: Theme.soft
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                }
                GumText {
                    id: trigger
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.trigger || "—"
                    size: 12
                    textFormat: Text.PlainText
                }
            }
        }
    }
    Card {
        width: parent.width
        visible: root.model.pushToTalkOffered

        SettingsRow {
            title: I18n.t("Appuyer pour parler")

            GumSwitch {
                objectName: "pushToTalkSwitch"
                name: I18n.t("Appuyer pour parler")
                tip: I18n.t("Le micro virtuel reste fermé tant que sa touche n'est pas tenue")
                checked: root.model.pushToTalk
                onToggled: root.model.pushToTalk = !root.model.pushToTalk
            }
        }
    }
}
