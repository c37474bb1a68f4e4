import QtQuick
import Velmora
import Velmora.Kit

// The volume of one output; its symbol mutes. Below it, what is the matter with it.
Item {
    id: root
    required property VolumeModel volume
    property string tip

    readonly property real lineHeight: 28

    implicitHeight: lineHeight + (note.visible ? note.implicitHeight + 2 : 0)

    GumButton {
        id: mute
        objectName: "mute"
        x: -4
        y: (root.lineHeight - height) / 2
        symbol: root.volume.symbol
        symbolSize: 18
        color: root.volume.muted || root.volume.closed ? Theme.faintest : Theme.ink60
        name: I18n.t("Couper le son") + " — " + root.volume.name
        Accessible.checkable: true
        Accessible.checked: root.volume.muted
        onClicked: root.volume.toggleMute()
    }
    LimiterLamp {
        objectName: "limiterLamp"
        anchors.right: mute.right
        anchors.rightMargin: -4
        anchors.top: mute.top
        anchors.topMargin: -2
        visible: root.volume.limited
    }
    BalanceFader {
        objectName: "volumeFader"
        anchors.left: mute.right
        anchors.leftMargin: 6
        anchors.right: parent.right
        y: (root.lineHeight - height) / 2
        name: root.volume.name
        tip: root.tip
        gain: root.volume.value
        onGainEdited: gain => root.volume.value = gain
    }
    NoticeLine {
        id: note
        objectName: "volumeNotice"
        anchors.left: mute.right
        anchors.leftMargin: 6
        anchors.right: parent.right
        y: root.lineHeight
        text: root.volume.notice
        remedy: root.volume.remedy
        strong: root.volume.closed
        subject: root.volume.name
        onActed: root.volume.applyRemedy()
    }
}
