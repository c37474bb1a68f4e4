import QtQuick
import Velmora.Kit

// Shows which control the keyboard acts on, just outside the shape that it is put into.
Rounded {
    id: root
    required property Item control
    property real cornerRadius: 0
    property real gap: 2

    objectName: "focusRing"
    anchors.fill: parent
    anchors.margins: -gap - outlineWidth
    radius: cornerRadius + gap + outlineWidth
    visible: InputMode.keyboard && control.activeFocus
    color: "transparent"
    outlineWidth: 2
    outlineColor: Theme.ring
}
