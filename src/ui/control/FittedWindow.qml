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

    // What a title bar and the desktop's own edges may need.
    readonly property int spared: 48
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
        askedHeight = chosenHeight > 0 ? Math.max(least, Math.min(chosenHeight, fitting)) : fitting;
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
    onLowestChanged: fit()
    onHeightChanged: {
        if (!visible)
            return;
        if (height === askedHeight)
            chosenHeight = chosenWhenAsked;
        else
            chosenHeight = height < Math.floor(fitting) ? height : 0;
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
