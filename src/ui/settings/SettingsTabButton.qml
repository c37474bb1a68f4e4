import QtQuick
import Velmora.Kit

// One tab of the settings: its symbol over its name.
Pressable {
    id: root
    required property string symbol
    required property string label
    required property bool chosen
    readonly property color shade: chosen ? Theme.onOcean : Theme.soft

    implicitWidth: 84
    implicitHeight: 52
    name: label
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTab
    Accessible.selected: chosen

    Rounded {
        id: shape
        anchors.fill: parent
        radius: 10
        color: root.chosen ? Theme.ocean : "transparent"

        Feedback {
            radius: shape.radius
            filled: root.chosen
            hovered: root.hovered
            down: root.down
        }
        FocusRing {
            control: root
            cornerRadius: shape.radius
        }
    }
    Column {
        anchors.centerIn: parent
        spacing: 4

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: root.symbol
            color: root.shade
            size: 20
        }
        GumText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.label
            size: 11
            color: root.shade
            font.weight: Font.DemiBold
        }
    }
}
