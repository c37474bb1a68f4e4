import QtQuick
import Velmora.Kit

// Shows which control the keyboard acts on, just outside the shape that it is put into.
Rectangle {
    id: root
    required property Item control
    property real cornerRadius: 0
    property real gap: 2

    objectName: "focusRing"
    anchors.fill: parent
    anchors.margins: -gap - border.width
    radius: cornerRadius + gap + border.width
    visible: InputMode.keyboard && control.activeFocus
    color: "transparent"
    border.width: 2
    border.color: Theme.ring
}
