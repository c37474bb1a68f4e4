import QtQuick
import Velmora.Kit

// Shows, while there is more than fits, which part of a list is seen.
Rectangle {
    id: root
    required property Flickable flickable

    objectName: "scrollBar"
    anchors.right: flickable.right
    anchors.rightMargin: -4
    y: flickable.y + flickable.visibleArea.yPosition * flickable.height
    width: 3
    height: Math.max(16, flickable.visibleArea.heightRatio * flickable.height)
    visible: flickable.visibleArea.heightRatio < 1
    radius: 1.5
    color: Theme.ink40
}
