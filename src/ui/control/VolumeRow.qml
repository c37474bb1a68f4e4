import QtQuick
import Velmora
import Velmora.Kit

// The volume of one output; its symbol mutes.
Item {
    id: root
    required property VolumeModel volume
    property string tip

    readonly property real lineHeight: 28

    implicitHeight: lineHeight + (talkNote.visible ? talkNote.implicitHeight : 0)

    GumButton {
        id: mute
        objectName: "mute"
        x: -4
        y: (root.lineHeight - height) / 2
        symbol: root.volume.symbol
        symbolSize: 18
        color: root.volume.muted || root.volume.closed ? Qt.alpha(Theme.ink, 0.25) : Theme.ink60
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
        y: (root.lineHeight - height) / 2
        name: root.volume.name
        tip: root.tip
        gain: root.volume.value
        onGainEdited: gain => root.volume.value = gain
    }
    GumText {
        id: talkNote
        objectName: "talkNote"
        anchors.left: mute.right
        anchors.leftMargin: 6
        anchors.right: parent.right
        y: root.lineHeight
        visible: text !== ""
        text: root.volume.talkNote
        size: 11
        color: root.volume.closed ? Theme.ink : Theme.ink60
        textFormat: Text.PlainText
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
