import QtQuick
import Velmora.Kit

// Shows, while there is more than fits, which part of a list is seen; it can be dragged. It stands
// at the right edge of the list, in the list itself or beside it.
Item {
    id: root
    required property Flickable flickable
    // From the list's right edge; negative = beyond it.
    property real inset: 0
    property real thickness: 3
    readonly property real travel: flickable.height - height
    readonly property real hidden: flickable.contentHeight - flickable.height

    visible: hidden > 0.5
    x: (parent === flickable ? 0 : flickable.x) + flickable.width - inset - (width + thickness) / 2
    y: (parent === flickable ? 0 : flickable.y) + travel * (hidden > 0 ? Math.max(0, Math.min(1, (flickable.contentY - flickable.originY) / hidden)) : 0)
    z: 1
    // What a finger or an unsteady hand can hit is wider than what is seen.
    width: 14
    height: Math.min(flickable.height, Math.max(24, flickable.height * flickable.height / Math.max(1, flickable.contentHeight)))

    Rounded {
        anchors.horizontalCenter: parent.horizontalCenter
        width: root.thickness
        height: parent.height
        radius: width / 2
        color: area.containsMouse || area.pressed ? Theme.ink : Theme.ink60
    }
    MouseArea {
        id: area
        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => grip = mouse.y
        onPositionChanged: mouse => {
            if (!pressed || root.travel <= 0)
                return;
            const moved = (mouse.y - grip) / root.travel * root.hidden;
            const at = root.flickable.contentY - root.flickable.originY + moved;
            root.flickable.contentY = root.flickable.originY + Math.max(0, Math.min(root.hidden, at));
        }
    }
}
