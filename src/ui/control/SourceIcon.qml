import QtQuick
import Velmora
import Velmora.Kit

// The picture of a source; pressing it mutes the source.
GumButton {
    id: root
    required property SourceStripModel strip
    required property string sourceName

    name: I18n.t("Couper le son") + " — " + sourceName
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
            sourceSize.width: Math.ceil(width * Comfort.scale)
            sourceSize.height: Math.ceil(height * Comfort.scale)
            opacity: root.strip.muted ? (Theme.highContrast ? 0.8 : 0.35) : 1
        }
        Symbol {
            anchors.fill: parent
            visible: root.strip.icon === ""
            name: root.strip.symbol === "" ? "app" : root.strip.symbol
            size: 20
            opacity: root.strip.muted ? (Theme.highContrast ? 0.8 : 0.35) : 1
        }
        MuteSlash {
            objectName: "muteSlash"
            anchors.fill: parent
            visible: root.strip.muted
        }
    }
}
