import QtQuick
import Velmora.Kit

// One of the program's own symbols, in a square of `size` points.
Image {
    id: root
    required property string name
    property color color: Theme.ink
    property real size: 16

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Comfort.scale)
    sourceSize.height: Math.ceil(size * Comfort.scale)
    source: name === "" ? "" : "image://glyph/" + name + "?" + String(color).slice(1)
}
