import QtQuick
import Velmora.Kit

// A fader for a linear gain, with its decibels beside it. Its bounds are those of every gain.
FocusScope {
    id: root
    required property real gain
    property string name
    property alias tip: fader.tip
    property real minDB: -60
    property real maxDB: 6
    readonly property string valueText: Scales.gainText(gain)
    // A screen reader leaves an infinity out.
    readonly property string spokenText: gain > 0 ? valueText : I18n.t("Silence")

    signal gainEdited(real gain)

    implicitWidth: 200
    implicitHeight: fader.implicitHeight

    FaderSlider {
        id: fader
        focus: true
        anchors.left: parent.left
        anchors.right: readOut.left
        anchors.rightMargin: 10
        height: parent.height
        name: root.name
        valueText: root.spokenText
        position: Scales.faderPosition(root.gain, root.minDB, root.maxDB)
        minimumValue: root.minDB
        maximumValue: root.maxDB
        step: 1 / (root.maxDB - root.minDB)
        pageSteps: 6
        onMoved: position => root.gainEdited(Scales.gainAtPosition(position, root.minDB, root.maxDB))
        onReset: root.gainEdited(1)
    }
    Text {
        id: readOut
        objectName: "readOut"
        anchors.right: parent.right
        width: 40
        height: parent.height
        text: root.valueText
        color: Theme.soft
        font.pointSize: Scales.fontSize(10.5)
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        opacity: root.enabled ? 1 : 0.4

        TapHandler {
            onDoubleTapped: root.gainEdited(1)
        }
    }
}
