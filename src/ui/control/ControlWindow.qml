import QtQuick
import Velmora

// The main window.
FittedWindow {
    id: root
    required property ControlWindowModel model

    title: "Velmora"
    contentWidth: view.implicitWidth
    contentHeight: view.implicitHeight
    leastHeight: view.minimumHeight

    PopoverView {
        id: view
        anchors.fill: parent
        model: root.model
    }
    Binding {
        target: root.model
        property: "visible"
        value: root.visible && root.visibility !== Window.Minimized
    }
    Shortcut {
        sequences: ["Ctrl+Z", "Meta+Z"]
        // Some desktops give the keyboard to a menu's window; this one is then active all the same.
        context: Qt.ApplicationShortcut
        enabled: root.active && root.model.undo.offered && !view.asking
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
