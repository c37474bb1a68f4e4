import QtQuick
import Velmora.Kit

// A text of the interface; `size` in points of the window, halves too.
Text {
    property real size: 13

    color: Theme.ink
    font.family: "Albert Sans"
    font.pointSize: Scales.fontSize(size)
    verticalAlignment: Text.AlignVCenter
}
