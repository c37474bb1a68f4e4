import QtQuick
import Velmora.Kit

// From dark to bright.
Item {
    id: root
    required property real tilt
    required property real range
    required property string summary
    signal moved(real amount)

    implicitHeight: 28

    Symbol {
        id: dark
        anchors.verticalCenter: parent.verticalCenter
        name: "moon.fill"
        color: Theme.ink60
        size: 14
    }
    BipolarSlider {
        objectName: "tiltSlider"
        anchors.left: dark.right
        anchors.right: bright.left
        anchors.margins: 8
        anchors.verticalCenter: parent.verticalCenter
        name: I18n.t("Tonalité, de sombre à brillant")
        valueText: root.summary
        tip: I18n.t("De sombre à brillant ; double-clic : neutre")
        value: root.tilt
        range: root.range
        onMoved: amount => root.moved(amount)
    }
    Symbol {
        id: bright
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        name: "sun.max.fill"
        color: Theme.ink60
        size: 16
    }
}
