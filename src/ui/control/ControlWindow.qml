import QtQuick
import Velmora
import Velmora.Kit

// The main window: as high as its content, but never higher than the screen.
Window {
    id: root
    required property ControlWindowModel model

    // What a title bar and the desktop's own edges may need.
    readonly property int spared: 48
    // The available height is that of all screens together, where several stand on each other.
    property real tallest: Math.max(240, Math.min(Screen.height, Screen.desktopAvailableHeight) - spared)
    readonly property real fitting: Math.min(view.implicitHeight, tallest)

    // Window managers hold a height within the bounds they know at that moment: the bounds give way
    // before the height changes, and close around it afterwards.
    function fit(): void {
        const least = Math.min(view.minimumHeight, fitting);
        maximumHeight = Math.max(maximumHeight, fitting);
        minimumHeight = Math.min(minimumHeight, least);
        height = fitting;
        maximumHeight = fitting;
        minimumHeight = least;
    }

    title: "Velmora"
    color: Theme.sand
    width: view.implicitWidth
    minimumWidth: view.implicitWidth
    maximumWidth: view.implicitWidth
    onFittingChanged: fit()
    Component.onCompleted: fit()

    PopoverView {
        id: view
        anchors.fill: parent
        model: root.model
        onMinimumHeightChanged: root.fit()
    }
    Binding {
        target: root.model
        property: "visible"
        value: root.visible && root.visibility !== Window.Minimized
    }
    Shortcut {
        sequences: ["Ctrl+Z", "Meta+Z"]
        enabled: root.model.undo.offered && !view.asking
        onActivated: root.model.undo.undo()
    }
    Shortcut {
        sequences: ["Ctrl+,", "Meta+,"]
        context: Qt.ApplicationShortcut
        onActivated: root.model.openSettings()
    }
    Shortcut {
        sequences: ["Ctrl+Q", "Meta+Q"]
        context: Qt.ApplicationShortcut
        onActivated: root.model.quit()
    }
}
