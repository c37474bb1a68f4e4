import QtQuick
import Velmora
import Velmora.Kit

// What was just taken away, with a button that brings it back. It lies over the page, so that
// nothing moves when it comes and goes, and stays while the pointer or the focus is on it.
FocusScope {
    id: root
    required property UndoModel undo
    // Something else has to be answered first.
    property bool waiting
    // It goes with the focus on it.
    signal departed

    implicitHeight: 48
    visible: undo.offered
    Keys.onEscapePressed: undo.dismiss()

    Connections {
        target: root.undo
        function onOfferedChanged() {
            if (!root.undo.offered && root.activeFocus)
                root.departed();
        }
    }
    Binding {
        target: root.undo
        property: "held"
        value: root.waiting || hover.hovered || root.activeFocus
    }

    SoftShadow {
        cornerRadius: panel.radius
    }
    Rounded {
        id: panel
        anchors.fill: parent
        radius: 12
        color: Theme.paper
        outlineColor: Theme.ink15
        outlineWidth: 1

        HoverHandler {
            id: hover
        }
        // Nothing behind takes the pointer.
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
        Label {
            objectName: "undoText"
            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.right: button.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: root.undo.text
            elide: Text.ElideMiddle
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        GumButton {
            id: button
            objectName: "undoButton"
            anchors.right: cross.left
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            height: 32
            filled: true
            text: I18n.t("Défaire")
            description: root.undo.text
            onClicked: root.undo.undo()
        }
        GumButton {
            id: cross
            objectName: "dismissUndo"
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            width: 32
            height: 32
            symbol: "xmark"
            color: Theme.ink60
            name: I18n.t("Masquer")
            onClicked: root.undo.dismiss()
        }
    }
}
