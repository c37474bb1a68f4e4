import QtQuick
import Velmora.Kit

// Answers the pointer: what it is over darkens a little (lightens, in the dark), more when pressed.
Rounded {
    property bool hovered: false
    property bool down: false

    anchors.fill: parent
    color: Theme.ink
    opacity: down ? 0.12 : hovered ? 0.06 : 0
}
