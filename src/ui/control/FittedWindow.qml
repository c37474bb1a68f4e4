import QtQuick
import Velmora.Kit

// A window of one width, as high as its content and never higher than the screen. A lower height
// that the user gives it by its edge is kept, until it is pulled to the whole again.
Window {
    id: root
    default property alias content: stage.data
    required property real contentWidth
    required property real contentHeight
    required property real leastHeight

    // Of the screen's points; the content counts those that it is drawn with.
    readonly property real wide: Math.ceil(contentWidth * Comfort.scale)
    readonly property real whole: Math.ceil(contentHeight * Comfort.scale)
    readonly property real lowest: leastHeight * Comfort.scale

    // Wayland tells no program where its windows stand, nor lets it move them: one that grows may
    // leave the screen. It grows by itself as far as a window in the middle of the screen has room
    // below it, and further where the user pulls it.
    property bool placedUnseen: Qt.platform.pluginName.startsWith("wayland")
    property real placedHeight: 0 // when it was placed; 0 = it is not
    property bool pulled: false
    readonly property bool bounded: placedUnseen && placedHeight > 0 && !pulled
    readonly property real growing: bounded ? Math.min(fitting, Math.max(placedHeight, Math.floor((tallest + placedHeight) / 2))) : fitting

    // What a title bar and the desktop's own edges may need; Wayland does not tell of those.
    readonly property int spared: placedUnseen ? 80 : 48
    // The available height is that of all screens together, where several stand on each other.
    property real tallest: Math.max(240, Math.min(Screen.height, Screen.desktopAvailableHeight) - spared)
    readonly property real fitting: Math.min(whole, tallest)
    // The user's; 0 = as the content asks.
    property real chosenHeight: 0
    // A desktop answers late, and perhaps with what was asked for before.
    property int askedHeight: 0
    property real chosenWhenAsked: 0

    // Window managers hold a height within the bounds they know at that moment: the bounds give way
    // before the height changes, and close around it afterwards.
    function fit(): void {
        const least = Math.min(lowest, fitting);
        maximumHeight = Math.max(maximumHeight, fitting);
        minimumHeight = Math.min(minimumHeight, least);
        askedHeight = chosenHeight > 0 ? Math.max(least, Math.min(chosenHeight, fitting)) : growing;
        chosenWhenAsked = chosenHeight;
        height = askedHeight;
        maximumHeight = fitting;
        minimumHeight = least;
    }

    color: Theme.sand
    width: wide
    minimumWidth: wide
    maximumWidth: wide
    onFittingChanged: fit()
    onGrowingChanged: fit()
    onLowestChanged: fit()
    onHeightChanged: {
        if (!visible)
            return;
        if (height === askedHeight)
            chosenHeight = chosenWhenAsked;
        else
            chosenHeight = height < Math.floor(fitting) ? height : 0;
        if (growing < fitting && height > growing)
            pulled = true;
    }
    onVisibleChanged: {
        pulled = false;
        placedHeight = visible ? height : 0;
    }
    Component.onCompleted: fit()

    // As far as the last pixel, where that is a part of a point: Qt fills whole points only.
    Rounded {
        anchors.fill: parent
        anchors.margins: -1
        color: root.color
    }
    Enlarged {
        id: stage

        TipBubble {}
    }
}
