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
        if (top < contentY || bottom - top > height)
            contentY = Math.max(0, Math.min(contentHeight - height, top));
        else if (bottom > contentY + height)
            contentY = Math.min(contentHeight - height, bottom - height);
    }

    // What has just come or grown, and the part of it that did, until there is room for them. Either
    // may go before that, which a list of items does not notice.
    property Item awaited
    property Item awaitedPart
    function revealSoon(item: Item, part: Item): void {
        awaited = item;
        awaitedPart = part;
        revealAwaited();
    }
    function revealAwaited(): void {
        reveal(awaited);
        reveal(awaitedPart);
    }

    contentWidth: width
    clip: scrolls
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: scrolls
    onFocusedChanged: reveal(focused)
    onContentHeightChanged: {
        revealAwaited();
        awaited = null;
        awaitedPart = null;
    }

    GumScrollBar {
        objectName: "scrollMark"
        parent: root
        flickable: root
        inset: 6
        thickness: 4
    }
}
