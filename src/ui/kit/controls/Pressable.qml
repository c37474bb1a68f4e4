import QtQuick
import Velmora.Kit

// What buttons, switches and choosers share: pointer, keys, focus, and a voice.
Item {
    id: root
    property string name
    // What it does, for whoever hesitates; may be empty.
    property string tip
    // What a screen reader adds to the name.
    property string description: tip === name ? "" : tip
    readonly property bool tipWanted: tip !== "" && (hovered || (activeFocus && InputMode.keyboard))
    readonly property bool hovered: area.containsMouse
    readonly property bool down: area.pressed && area.containsMouse

    signal clicked

    onTipWantedChanged: {
        if (tipWanted)
            Tips.offer(root, tip);
        else
            Tips.withdraw(root);
    }
    onClicked: Tips.withdraw(root)
    Component.onDestruction: Tips.withdraw(root)
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: description
    Accessible.focusable: true
    Accessible.onPressAction: clicked()
    Keys.onPressed: event => {
        const keys = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter];
        event.accepted = keys.includes(event.key) && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted && !event.isAutoRepeat)
            clicked();
    }

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onPressed: {
            Tips.withdraw(root);
            root.forceActiveFocus(Qt.MouseFocusReason);
        }
        // A finger that stays asks what it would do.
        onPressAndHold: mouse => {
            mouse.accepted = InputMode.touch && root.tip !== "";
            if (mouse.accepted)
                Tips.tell(root, root.tip);
        }
        onClicked: root.clicked()
    }
}
