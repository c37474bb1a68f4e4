import QtQuick
import Velmora
import Velmora.Kit

// Appearance, language, launch at login, version.
Column {
    id: root
    required property SettingsModel model

    spacing: 10

    Card {
        width: parent.width

        SettingsRow {
            title: I18n.t("Apparence")

            GumDropdown {
                objectName: "appearanceMenu"
                width: 160
                name: I18n.t("Apparence")
                options: root.model.appearanceOptions
                current: root.model.appearance
                onPicked: tag => root.model.appearance = tag
            }
        }
        SettingsRow {
            title: I18n.t("Langue")

            GumDropdown {
                objectName: "languageMenu"
                width: 160
                name: I18n.t("Langue")
                options: root.model.languageOptions
                current: root.model.language
                onPicked: tag => root.model.language = tag
            }
        }
    }
    Card {
        width: parent.width

        SettingsRow {
            title: I18n.t("Lancer à l'ouverture de session")

            GumSwitch {
                objectName: "loginSwitch"
                name: I18n.t("Lancer à l'ouverture de session")
                checked: root.model.launchAtLogin
                onToggled: root.model.launchAtLogin = !root.model.launchAtLogin
            }
        }
        SettingsNote {
            objectName: "loginError"
            text: root.model.loginError
        }
    }
    Card {
        width: parent.width

        SettingsRow {
            title: "Version"

            GumText {
                objectName: "version"
                text: root.model.version
                color: Theme.soft
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: "Version " + text
            }
        }
    }
}
