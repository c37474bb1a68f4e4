import QtQuick
import Velmora
import Velmora.Kit

// The volume of one output; its symbol mutes.
Item {
    id: root
    required property VolumeModel volume
    property string tip

    implicitHeight: 28

    GumButton {
        id: mute
        objectName: "mute"
        anchors.verticalCenter: parent.verticalCenter
        x: -4
        symbol: root.volume.symbol
        symbolSize: 18
        color: root.volume.muted ? Qt.alpha(Theme.ink, 0.25) : Theme.ink60
        name: I18n.t("Couper le son") + " — " + root.volume.name
        Accessible.checkable: true
        Accessible.checked: root.volume.muted
        onClicked: root.volume.toggleMute()
    }
    BalanceFader {
        objectName: "volumeFader"
        anchors.left: mute.right
        anchors.leftMargin: 6
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        name: root.volume.name
        tip: root.tip
        gain: root.volume.value
        onGainEdited: gain => root.volume.value = gain
    }
}
