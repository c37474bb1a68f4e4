import QtQuick
import Velmora
import Velmora.Kit

// The settings window: as high as the higher one of its tabs, so that it does not jump.
FittedWindow {
    id: root
    required property SettingsModel model

    title: I18n.t("Réglages Velmora")
    contentWidth: view.implicitWidth
    contentHeight: view.implicitHeight
    leastHeight: view.minimumHeight
    onActiveChanged: {
        if (active)
            model.refresh();
    }

    SettingsView {
        id: view
        anchors.fill: parent
        model: root.model
    }
    Binding {
        target: root.model
        property: "visible"
        value: root.visible && root.visibility !== Window.Minimized
    }
}
