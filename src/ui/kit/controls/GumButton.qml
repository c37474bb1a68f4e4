import QtQuick
import Velmora.Kit

// A button with a symbol, a text, or both. `filled` marks the one that is meant to be pressed.
Pressable {
    id: root
    property string text
    property string symbol
    property real symbolSize: 16
    property bool filled: false
    property color color: filled ? Theme.onOcean : Theme.ink
    property bool semibold: filled

    name: text
    tip: text === "" ? name : ""
    implicitWidth: Math.max(implicitHeight, content.implicitWidth + (text === "" ? 8 : 24))
    implicitHeight: text === "" ? 24 : 28
    opacity: enabled ? 1 : 0.4

    Rounded {
        id: shape
        anchors.fill: parent
        radius: root.text === "" ? 6 : 8
        color: root.filled ? Theme.ocean : "transparent"

        Feedback {
            radius: shape.radius
            filled: root.filled
            hovered: root.hovered
            down: root.down
        }
        FocusRing {
            control: root
            cornerRadius: shape.radius
            gap: root.filled ? 2 : 0
        }
    }

    Row {
        id: content
        anchors.centerIn: parent
        spacing: 6

        Symbol {
            visible: root.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            color: root.color
            size: root.symbolSize
        }
        GumText {
            visible: root.text !== ""
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.color
            font.weight: root.semibold ? Font.DemiBold : Font.Normal
        }
    }
}
