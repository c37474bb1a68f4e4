import QtQuick
import Velmora.Kit

// A fader from 0 to 1. `step` is what an arrow key or a notch of the wheel adds.
GumSlider {
    id: root
    property real step: 0.01

    signal moved(real position)

    spokenValue: minimumValue + position * (maximumValue - minimumValue)
    stepSize: step * (maximumValue - minimumValue)
    onDragged: position => moved(position)
    onStepped: steps => moved(Scales.stepped(position, steps * step, 0, 1))
    onValueAsked: value => moved((value - minimumValue) / (maximumValue - minimumValue))
}
