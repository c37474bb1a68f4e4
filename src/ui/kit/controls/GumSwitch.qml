import QtQuick
import Velmora.Kit

// Every on/off switch. It shows `checked` and asks for the other state.
Pressable {
    id: root
    property bool checked: false
    property real trackHeight: 20
    readonly property real knobSize: trackHeight - 7
    readonly property real inset: (trackHeight - knobSize) / 2

    signal toggled

    implicitWidth: Math.round(trackHeight * 1.8)
    implicitHeight: Math.max(24, trackHeight)
    opacity: enabled ? 1 : 0.4
    onClicked: toggled()
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onToggleAction: toggled()

    Rounded {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: root.trackHeight
        radius: height / 2
        color: root.checked ? Theme.ocean : Theme.shore
        outlineWidth: 2
        outlineColor: Theme.ink

        Behavior on color {
            enabled: !Comfort.still
            ColorAnimation {
                duration: 220
                easing.type: Easing.InOutQuad
            }
        }

        Feedback {
            radius: track.radius
            hovered: root.hovered
            down: root.down
        }
        Rounded {
            objectName: "knob"
            x: root.checked ? track.width - width - root.inset : root.inset
            y: root.inset
            width: root.knobSize
            height: width
            color: root.checked ? Theme.sun : Theme.paper
            radius: width / 2
            outlineColor: Theme.ink
            outlineWidth: 2

            Behavior on x {
                enabled: !Comfort.still
                NumberAnimation {
                    duration: 220
                    easing.type: Easing.InOutQuad
                }
            }
            Behavior on color {
                enabled: !Comfort.still
                ColorAnimation {
                    duration: 220
                    easing.type: Easing.InOutQuad
                }
            }
        }
        FocusRing {
            control: root
            cornerRadius: track.radius
        }
    }
}
