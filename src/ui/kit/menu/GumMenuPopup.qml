import QtQuick
import Velmora.Kit

// Opens a menu beside an item, in a window of its own, which may leave the item's. A press outside,
// Escape or a choice closes it, and the focus is where it was.
Item {
    id: root
    required property Item anchor
    property string name
    property GumMenuModel menu: null
    readonly property bool opened: menu !== null

    signal closed

    function open(model: GumMenuModel) {
        if (opened)
            close();
        outside.parent = Window.contentItem;
        menu = model;
        popup.open();
        view.forceActiveFocus(Qt.PopupFocusReason);
    }
    function close() {
        popup.dismiss();
    }

    visible: false

    PopupWindow {
        id: popup
        title: root.name
        anchor: root.anchor
        wanted: Qt.size(Math.ceil(view.implicitWidth * Comfort.scale), Math.ceil(view.implicitHeight * Comfort.scale))
        onDismissed: root.menu = null
        onLeft: root.closed()

        // The rim looks like what lies below.
        MouseArea {
            anchors.fill: parent
            onPressed: popup.dismiss()
        }
        Enlarged {
            GumMenuView {
                id: view
                anchors.fill: parent
                anchors.margins: popup.rim / Comfort.scale
                anchors.topMargin: popup.upperRim / Comfort.scale
                cornerRadius: popup.rim > 0 ? 10 : 0
                model: root.menu
                name: root.name
                onDismiss: popup.dismiss()
            }
            TipBubble {}
        }
    }
    // Where the desktop leaves presses beside the menu to the window that was pressed.
    MouseArea {
        id: outside
        anchors.fill: parent
        z: 1000
        visible: root.opened
        hoverEnabled: true
        onPressed: popup.dismiss()
        onWheel: {}
    }
}
