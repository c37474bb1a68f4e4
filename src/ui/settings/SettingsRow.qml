import QtQuick
import Velmora.Kit

// One setting: its name on the left, what changes it on the right.
Item {
    id: root
    required property string title
    default property alias control: side.data

    width: parent ? parent.width : 0
    implicitHeight: Math.max(36, side.childrenRect.height + 4)

    GumText {
        anchors.left: parent.left
        anchors.right: side.left
        anchors.rightMargin: 12
        height: parent.height
        text: root.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
    Item {
        id: side
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
}
