import QtQuick
import Velmora.Kit

// The shadow of what lies above the page, which is lit from above. It begins below it, so that it
// is nowhere even.
FadingEdge {
    required property real cornerRadius
    readonly property real below: 6
    readonly property real beside: 9

    reach: below + beside
    radius: Math.max(0, cornerRadius - below)
    color: Theme.shadow
    x: -beside
    y: 3 - beside
    width: parent.width + 2 * beside
    height: parent.height + 2 * beside
}
