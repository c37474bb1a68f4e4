import QtQuick
import Velmora.Kit

// Scrolls what is higher than its place, shows how far, and follows the keyboard focus.
Flickable {
    id: root

    // Where the focus is now; what lies in here is brought into view.
    readonly property Item focused: Window.activeFocusItem
    readonly property bool scrolls: contentHeight > height + 0.5

    function reveal(item: Item): void {
        let owner = item;
        while (owner && owner !== contentItem)
            owner = owner.parent;
        if (!owner || !scrolls)
            return;
        const top = item.mapToItem(contentItem, 0, 0).y - 8;
        const bottom = top + item.height + 16;
        if (top < contentY)
            contentY = Math.max(0, top);
        else if (bottom > contentY + height)
            contentY = Math.min(contentHeight - height, bottom - height);
    }

    contentWidth: width
    clip: scrolls
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: scrolls
    onFocusedChanged: reveal(focused)

    Rectangle {
        objectName: "scrollMark"
        parent: root
        visible: root.scrolls
        x: root.width - width - 4
        y: root.height * root.visibleArea.yPosition
        width: 4
        height: Math.max(24, root.height * root.visibleArea.heightRatio)
        radius: 2
        color: Theme.ink40
        z: 1
    }
}
