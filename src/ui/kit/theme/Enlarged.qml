import QtQuick
import Velmora.Kit

// Fills a window and draws what is in it as large as the desktop asks: texts, symbols and measures
// alike. Inside, points are those of a window of the usual size.
Item {
    width: parent ? parent.width / scale : 0
    height: parent ? parent.height / scale : 0
    scale: Comfort.scale
    transformOrigin: Item.TopLeft
}
