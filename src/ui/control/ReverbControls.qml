import QtQuick
import Velmora
import Velmora.Kit

// The kind of room and how much of it.
Column {
    id: root
    required property EffectsModel effects

    spacing: 6

    GumSegments {
        width: parent.width
        name: I18n.t("Réverbération")
        options: root.effects.reverbCharacters
        current: root.effects.reverbChar
        onPicked: index => root.effects.reverbChar = index
    }
    Item {
        width: parent.width
        height: 28

        FaderSlider {
            objectName: "reverbMix"
            anchors.left: parent.left
            anchors.right: amount.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: I18n.t("Quantité de réverbération")
            valueText: root.effects.reverbText
            tip: I18n.t("Quantité de réverbération ; double-clic : aucune")
            position: root.effects.reverbMix
            onMoved: position => root.effects.reverbMix = position
            onReset: root.effects.reverbMix = 0
        }
        Label {
            id: amount
            objectName: "reverbText"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 40
            horizontalAlignment: Text.AlignRight
            text: root.effects.reverbText
            color: Theme.soft
            size: 11
        }
    }
}
