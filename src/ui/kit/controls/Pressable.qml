import QtQuick

// What buttons, switches and choosers share: pointer, keys, focus, and a voice.
Item {
    id: root
    property string name
    readonly property bool hovered: area.containsMouse
    readonly property bool down: area.pressed && area.containsMouse

    signal clicked

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
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
        onPressed: root.forceActiveFocus(Qt.MouseFocusReason)
        onClicked: root.clicked()
    }
}
