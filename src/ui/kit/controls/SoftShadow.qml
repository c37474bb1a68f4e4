pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Kit

// The shadow of what lies above the page: a few faint shapes, because Qt's effects draw nothing
// without a graphics card.
Item {
    id: root
    required property real cornerRadius

    anchors.fill: parent

    Repeater {
        model: 5

        Rounded {
            required property int index
            readonly property real reach: 1 + 2 * index
            x: -reach
            y: 3 - reach
            width: root.width + 2 * reach
            height: root.height + 2 * reach
            radius: root.cornerRadius + reach
            color: Theme.shadow
        }
    }
}
