import QtQuick
import Velmora
import Velmora.Kit

// The picture of a source; pressing it mutes the source.
GumButton {
    id: root
    required property SourceStripModel strip

    name: I18n.t("Couper le son") + " — " + strip.nameIn(I18n.t("Entrée"), I18n.t("Entrées"))
    tip: strip.muted ? I18n.t("Remettre dans le mix") : I18n.t("Couper dans le mix")
    Accessible.checkable: true
    Accessible.checked: strip.muted
    onClicked: strip.toggleMute()

    Item {
        anchors.centerIn: parent
        width: 20
        height: 20

        Image {
            anchors.fill: parent
            visible: root.strip.icon !== ""
            source: root.strip.icon
            sourceSize.width: 20
            sourceSize.height: 20
            opacity: root.strip.muted ? 0.35 : 1
        }
        Symbol {
            anchors.fill: parent
            visible: root.strip.icon === ""
            name: root.strip.symbol === "" ? "app" : root.strip.symbol
            size: 20
            opacity: root.strip.muted ? 0.35 : 1
        }
        MuteSlash {
            objectName: "muteSlash"
            anchors.fill: parent
            visible: root.strip.muted
        }
    }
}
