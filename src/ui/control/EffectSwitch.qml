import QtQuick
import Velmora.Kit

// An effect that is either on or off.
Item {
    id: root
    required property string title
    required property bool checked
    property string name: title
    property string tip
    signal toggled

    implicitHeight: 30

    Label {
        anchors.left: parent.left
        anchors.right: control.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
    }
    GumSwitch {
        id: control
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        name: root.name
        tip: root.tip
        checked: root.checked
        onToggled: root.toggled()
    }
}
