import QtQuick
import Velmora.Kit

// The slider behind FaderSlider and BipolarSlider: how it looks, and what mouse, wheel, keys and
// screen readers ask for. What that means is decided by whoever uses it.
Item {
    id: root
    required property real position
    property string name
    property string valueText
    // What its gestures do, for whoever hesitates; may be empty.
    property string tip
    readonly property bool tipWanted: tip !== "" && !area.pressed && (area.hovered || (activeFocus && InputMode.keyboard))
    // Where the filled part begins, 0 … 1.
    property real origin: 0
    property real thumbSize: 16
    property real pageSteps: 10

    // The value that a screen reader hears and sets, and its bounds.
    property real spokenValue: position
    property real minimumValue: 0
    property real maximumValue: 1
    property real stepSize: 0.01
    property real value: spokenValue

    signal dragged(real position)
    signal reset
    // By so many steps; a tenth of one with Shift.
    signal stepped(real steps)
    signal valueAsked(real value)

    implicitWidth: 120
    implicitHeight: 24
    opacity: enabled ? 1 : 0.4
    activeFocusOnTab: true
    onTipWantedChanged: {
        if (tipWanted)
            Tips.offer(root, tip);
        else
            Tips.withdraw(root);
    }
    onPositionChanged: Tips.withdraw(root)
    Component.onDestruction: Tips.withdraw(root)
    onValueChanged: {
        if (Math.abs(value - spokenValue) > 1e-6)
            valueAsked(value);
    }
    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.description: valueText
    Accessible.focusable: true
    Accessible.onIncreaseAction: stepped(1)
    Accessible.onDecreaseAction: stepped(-1)
    Keys.onPressed: event => {
        if (event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier))
            return;
        const step = event.modifiers & Qt.ShiftModifier ? 0.1 : 1;
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Left:
        case Qt.Key_Down:
            return stepped(-step);
        case Qt.Key_Right:
        case Qt.Key_Up:
            return stepped(step);
        case Qt.Key_PageDown:
            return stepped(-pageSteps);
        case Qt.Key_PageUp:
            return stepped(pageSteps);
        case Qt.Key_Home:
            return dragged(0);
        case Qt.Key_End:
            return dragged(1);
        case Qt.Key_Backspace:
        case Qt.Key_Delete:
            return reset();
        }
        event.accepted = false;
    }

    Rounded {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        radius: 2
        color: Theme.groove
    }
    Rounded {
        readonly property real start: thumb.travel * root.origin + (root.origin === 0 ? 0 : thumb.width / 2)
        readonly property real end: thumb.x + thumb.width / 2
        x: Math.min(start, end)
        anchors.verticalCenter: parent.verticalCenter
        width: Math.abs(end - start)
        height: track.height
        radius: track.radius
        color: Theme.accentLeading
        trailingColor: Theme.accentTrailing
    }
    Rounded {
        id: thumb
        readonly property real travel: root.width - width
        objectName: "thumb"
        anchors.verticalCenter: parent.verticalCenter
        x: travel * root.position
        width: root.thumbSize
        height: width
        radius: width / 2
        color: Theme.sun
        outlineWidth: 2
        outlineColor: Theme.ink

        Feedback {
            radius: parent.radius
            hovered: area.hovered
            down: area.pressed
        }
        FocusRing {
            control: root
            cornerRadius: parent.radius
        }
    }

    DragArea {
        id: area
        anchors.fill: parent
        thumbSize: root.thumbSize
        hasFocus: root.activeFocus
        onPressedChanged: {
            if (pressed)
                root.forceActiveFocus(Qt.MouseFocusReason);
        }
        onDragged: position => root.dragged(position)
        onReset: root.reset()
        onWheeled: (notches, fine) => root.stepped(fine ? notches / 10 : notches)
    }
}
