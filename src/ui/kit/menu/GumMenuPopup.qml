import QtQuick
import Velmora.Kit

// Opens a menu beside an item, over everything else in the window. A press outside, Escape or a
// choice closes it, and the focus returns to where it was.
Item {
    id: root
    required property Item anchor
    property string name
    property GumMenuModel menu: null
    property Item focusBefore: null
    readonly property bool opened: menu !== null

    signal closed

    function open(model: GumMenuModel) {
        focusBefore = Window.activeFocusItem;
        outside.parent = Window.contentItem;
        menu = model;
        view.forceActiveFocus(Qt.PopupFocusReason);
    }
    function close() {
        if (!opened)
            return;
        menu = null;
        if (focusBefore !== null)
            focusBefore.forceActiveFocus(Qt.PopupFocusReason);
        closed();
    }

    visible: false

    Connections {
        target: root.Window.window
        function onActiveChanged() {
            if (!root.Window.active)
                root.close();
        }
        function onWidthChanged() {
            root.close();
        }
        function onHeightChanged() {
            root.close();
        }
    }
    MouseArea {
        id: outside
        anchors.fill: parent
        z: 1000
        visible: root.opened
        hoverEnabled: true
        onPressed: root.close()
        onWheel: {}

        GumMenuView {
            id: view
            readonly property rect place: PopupPlace.beside(anchorRect, Qt.size(implicitWidth, implicitHeight), Qt.size(outside.width, outside.height))
            readonly property rect anchorRect: root.opened ? root.anchor.mapToItem(null, 0, 0, root.anchor.width, root.anchor.height) : Qt.rect(0, 0, 0, 0)

            x: place.x
            y: place.y
            width: place.width
            height: place.height
            model: root.menu
            name: root.name
            onDismiss: root.close()
        }
    }
}
