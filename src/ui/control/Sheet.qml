import QtQuick
import Velmora.Kit

// A panel over the whole window that has to be answered first. The focus stays inside, because
// whoever shows it disables what lies behind, and returns to where it was. Escape cancels.
FocusScope {
    id: root
    required property string name
    property real panelWidth: 300
    default property alias content: body.data
    readonly property alias opened: root.visible
    signal cancelled

    property Item before

    function open(first: Item): void {
        before = Window.activeFocusItem;
        visible = true;
        first.forceActiveFocus(Qt.OtherFocusReason);
    }
    function close(): void {
        visible = false;
        if (before)
            before.forceActiveFocus(Qt.OtherFocusReason);
        before = null;
    }

    visible: false
    Keys.onEscapePressed: root.cancelled()

    // Nothing behind takes the pointer.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    Rounded {
        anchors.fill: parent
        anchors.margins: -1
        color: Theme.veil
    }
    Rounded {
        objectName: "sheetPanel"
        anchors.centerIn: parent
        width: Math.min(root.panelWidth, root.width - 32)
        height: Math.min(body.childrenRect.height + 40, root.height - 32)
        radius: 14
        color: Theme.paper
        outlineColor: Theme.ink15
        outlineWidth: 1
        Accessible.role: Accessible.Dialog
        Accessible.name: root.name

        SoftShadow {
            z: -1
            cornerRadius: parent.radius
        }

        Item {
            id: body
            anchors.fill: parent
            anchors.margins: 20
        }
    }
}
