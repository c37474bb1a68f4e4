import QtQuick
import Velmora.Kit

// Answers the pointer: what it is over darkens a little (lightens, in the dark), more when pressed.
// What is filled darkens in the dark as well, so that the pale words on it stay readable.
Rounded {
    property bool filled: false
    property bool hovered: false
    property bool down: false

    anchors.fill: parent
    color: filled ? "black" : Theme.ink
    opacity: down ? 0.12 : hovered ? 0.06 : 0
}
