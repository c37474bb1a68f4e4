import QtQuick
import Velmora.Kit

// One application of the list to choose from.
Item {
    id: root
    required property string name
    required property string icon
    property bool current
    signal picked
    signal chosen

    implicitHeight: 32
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.selected: current
    Accessible.selectable: true
    Accessible.onPressAction: root.chosen()

    Rounded {
        anchors.fill: parent
        radius: 6
        color: root.current ? Theme.ocean : Qt.alpha(Theme.ink, area.containsMouse ? 0.06 : 0)
    }
    Image {
        id: picture
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 20
        height: 20
        sourceSize.width: Math.ceil(width * Comfort.scale)
        sourceSize.height: Math.ceil(height * Comfort.scale)
        visible: root.icon !== ""
        source: root.icon
    }
    Symbol {
        anchors.fill: picture
        visible: root.icon === ""
        name: "app"
        size: 20
        color: root.current ? "white" : Theme.ink60
    }
    Label {
        anchors.left: picture.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        color: root.current ? "white" : Theme.ink
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.picked()
        onDoubleClicked: root.chosen()
    }
}
