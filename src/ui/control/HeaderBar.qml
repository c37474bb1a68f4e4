import QtQuick
import Velmora.Kit

// The top of the window: the logo, the wordmark and the switch that starts and stops the mix.
Item {
    id: root
    required property bool running
    signal toggled

    implicitHeight: 34

    Image {
        id: logo
        anchors.verticalCenter: parent.verticalCenter
        source: "qrc:/qt/qml/Velmora/Kit/logo.svg"
        sourceSize.width: Math.ceil(width * Comfort.scale)
        sourceSize.height: Math.ceil(height * Comfort.scale)
        width: 30
        height: 30

        // The drawing's rim is made for light surfaces.
        Rounded {
            anchors.fill: parent
            radius: width / 2
            color: "transparent"
            outlineColor: Theme.ink
            outlineWidth: 2
        }
    }
    Label {
        anchors.left: logo.right
        anchors.leftMargin: 10
        anchors.right: runningSwitch.left
        anchors.verticalCenter: parent.verticalCenter
        text: "Velmora"
        font.family: "Bricolage Grotesque"
        size: 22
        font.weight: Font.ExtraBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    GumSwitch {
        id: runningSwitch
        objectName: "runningSwitch"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        name: I18n.t("En marche")
        tip: root.running ? I18n.t("Arrêter le mix") : I18n.t("Mettre le mix en marche")
        checked: root.running
        onToggled: root.toggled()
    }
}
