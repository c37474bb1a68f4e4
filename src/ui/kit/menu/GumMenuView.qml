pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Kit

// A menu of items, for mouse and keyboard. It asks to be dismissed after a choice.
FocusScope {
    id: root
    required property GumMenuModel model
    readonly property real padding: 6
    property real cornerRadius: 10
    property string name

    signal dismiss

    implicitWidth: Math.max(230, list.widest + 2 * padding)
    implicitHeight: Math.min(380, list.contentHeight + 2 * padding)
    Accessible.role: Accessible.PopupMenu
    Accessible.name: name
    Keys.onPressed: event => event.accepted = keys.press(event)

    Connections {
        target: root.model
        function onDismissed() {
            root.dismiss();
        }
        function onModelAboutToBeReset() {
            list.keep();
        }
        function onItemsReplaced() {
            list.restore();
        }
    }

    SoftShadow {
        cornerRadius: root.cornerRadius
    }
    Rounded {
        anchors.fill: parent
        radius: root.cornerRadius
        color: Theme.paper
        outlineWidth: 1
        outlineColor: Theme.ink15
    }
    ListView {
        id: list
        property real widest: 0
        property int keptIndex: -1
        property real keptY: 0

        function start() {
            widest = 0;
            currentIndex = root.model === null ? -1 : root.model.checkedRow();
            positionViewAtIndex(currentIndex, ListView.Contain);
        }
        function keep() {
            keptIndex = currentIndex;
            keptY = contentY;
        }
        function restore() {
            forceLayout();
            currentIndex = Math.min(keptIndex, count - 1);
            contentY = Math.max(0, Math.min(keptY, contentHeight - height));
        }

        anchors.fill: parent
        anchors.margins: root.padding
        focus: true
        clip: true
        onModelChanged: start()
        Component.onCompleted: start()
        model: root.model
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        delegate: GumMenuEntry {
            width: list.width
            isCurrent: ListView.isCurrentItem
            focus: isCurrent
            onTap: root.model.activate(index)
            onUnfoldTap: root.model.toggleExpanded(index)
            onDeleteTap: root.model.deleteRow(index)
            Component.onCompleted: list.widest = Math.max(list.widest, implicitWidth)
        }
    }
    GumScrollBar {
        objectName: "scrollBar"
        flickable: list
        inset: -2.5
    }
    // The pointer chooses by moving, not by what a scrolling list brings under it.
    HoverHandler {
        property var place: null

        onPointChanged: {
            const now = point.position;
            const moved = place !== null && (place.x !== now.x || place.y !== now.y);
            place = now;
            const row = list.indexAt(now.x - list.x, now.y - list.y + list.contentY);
            if (moved && root.model.isChoosable(row))
                list.currentIndex = row;
        }
    }
    GumMenuKeys {
        id: keys
        model: root.model
        current: list.currentIndex
        onMoved: row => list.currentIndex = row
        onDismiss: root.dismiss()
    }
}
