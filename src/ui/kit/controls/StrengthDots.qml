pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Kit

// One to three dots for a strength. Pictures, because the font has none, and a small rounded
// rectangle is not round where a point is not a whole number of pixels.
Row {
    id: root
    required property int count
    property color color: Theme.ink
    property real size: 7

    spacing: 2

    Repeater {
        model: root.count

        Symbol {
            name: "circle.fill"
            size: root.size
            color: root.color
        }
    }
}
