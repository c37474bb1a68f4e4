import QtQuick
import Velmora.Kit

// Opens the menu that adds one more source.
RowButton {
    id: root

    implicitHeight: 40
    radius: 12
    name: I18n.t("Ajouter une source")

    DashedBorder {
        anchors.fill: parent
        radius: root.radius
        color: root.hovered ? Theme.ink : Theme.ink60
    }
    Symbol {
        id: sign
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        name: "plus"
        color: root.hovered ? Theme.ink : Theme.ink60
        size: 16
    }
    Label {
        anchors.left: sign.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        color: root.hovered ? Theme.ink : Theme.soft
    }
}
