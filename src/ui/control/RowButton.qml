import QtQuick
import Velmora.Kit

// A whole row or card that can be pressed. What it shows goes inside.
Pressable {
    id: root
    property real radius: 8
    // Space between the shape and its focus ring; negative = the ring lies inside.
    property real ringGap: 2

    Feedback {
        radius: root.radius
        hovered: root.hovered
        down: root.down
    }
    FocusRing {
        control: root
        cornerRadius: root.radius
        gap: root.ringGap
    }
}
