import QtQuick
import Velmora.Kit

// One button of GumSegments.
Pressable {
    id: root
    required property string label
    required property bool chosen
    // One stop for the whole row; arrows go on from there.
    required property bool isStop
    readonly property color textColor: chosen ? Theme.onOcean : Theme.soft
    readonly property bool isDots: label.startsWith("●")

    activeFocusOnTab: isStop
    z: activeFocus ? 1 : 0
    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.onToggleAction: clicked()

    Rounded {
        id: shape
        anchors.fill: parent
        radius: 8
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
    GumText {
        anchors.centerIn: parent
        visible: !root.isDots
        text: root.label
        size: 12.5
        color: root.textColor
        font.weight: Font.DemiBold
    }
    StrengthDots {
        anchors.centerIn: parent
        count: root.isDots ? root.label.length : 0
        color: root.textColor
    }
}
