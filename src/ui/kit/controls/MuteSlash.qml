import QtQuick
import Velmora.Kit

// A stroke across a control that is muted.
Item {
    id: root

    Rectangle {
        anchors.centerIn: parent
        width: Math.hypot(root.width, root.height)
        height: 1.5
        rotation: -Math.atan2(root.height, root.width) * 180 / Math.PI
        antialiasing: true
        color: Theme.ink40
    }
}
