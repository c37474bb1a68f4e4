import QtQuick
import Velmora.Kit

// A slider from −range to +range that rests easily at 0. `step` is what an arrow key or a notch of
// the wheel adds.
Item {
    id: root
    required property real value
    required property real range
    property real step: range / 100
    property string name
    property string valueText
    property alias tip: slider.tip

    signal moved(real value)

    implicitWidth: slider.implicitWidth
    implicitHeight: slider.implicitHeight

    Rectangle {
        anchors.centerIn: parent
        width: 2
        height: 10
        color: Theme.ink40
    }
    GumSlider {
        id: slider
        anchors.fill: parent
        name: root.name
        valueText: root.valueText
        position: Scales.bipolarPosition(root.value, root.range)
        origin: 0.5
        spokenValue: root.value
        minimumValue: -root.range
        maximumValue: root.range
        stepSize: root.step
        onDragged: position => root.moved(Scales.bipolarValue(position, root.range))
        onReset: root.moved(0)
        onStepped: steps => root.moved(Scales.stepped(root.value, steps * root.step, -root.range, root.range))
        onValueAsked: value => root.moved(value)
    }
}
