import QtQuick
import Velmora
import Velmora.Kit

// The settings window: as high as the higher one of its tabs, so that it does not jump. The height
// has no bounds: window managers would apply the old ones to a new height.
Window {
    id: root
    required property SettingsModel model

    title: I18n.t("Réglages Velmora")
    color: Theme.sand
    width: view.implicitWidth
    height: view.implicitHeight
    minimumWidth: width
    maximumWidth: width
    onActiveChanged: {
        if (active)
            model.refresh();
    }

    SettingsView {
        id: view
        anchors.fill: parent
        model: root.model
    }
}
