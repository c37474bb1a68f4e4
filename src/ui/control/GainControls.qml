import QtQuick
import Velmora
import Velmora.Kit

// Gain that follows the voice, or set by hand.
Column {
    id: root
    required property EffectsModel effects

    EffectSwitch {
        objectName: "autoGain"
        width: parent.width
        title: "Auto"
        name: I18n.t("Gain automatique")
        tip: I18n.t("Le gain suit la voix")
        checked: root.effects.autoGain
        onToggled: root.effects.autoGain = !root.effects.autoGain
    }
    Item {
        width: parent.width
        height: 28
        visible: !root.effects.autoGain

        BipolarSlider {
            objectName: "manualGain"
            anchors.left: parent.left
            anchors.right: amount.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: I18n.t("Gain fixe")
            valueText: root.effects.manualText
            tip: I18n.t("Gain fixe ; double-clic : 0 dB")
            value: root.effects.manualDB
            range: root.effects.manualRange
            onMoved: value => root.effects.manualDB = value
        }
        Label {
            id: amount
            objectName: "manualText"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 40
            horizontalAlignment: Text.AlignRight
            text: root.effects.manualText
            color: Theme.soft
            size: 11
        }
    }
}
