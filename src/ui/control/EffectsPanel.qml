import QtQuick
import Velmora
import Velmora.Kit

// The effects of one source: a row each, of which one at a time is open.
Column {
    id: root
    required property EffectsModel effects

    // Itself where none is open.
    function openRow(): Item {
        for (let i = 0; i < children.length; i++) {
            const row = children[i] as EffectRow;
            if (row && row.open)
                return row;
        }
        return root;
    }

    objectName: "effectsPanel"
    topPadding: 4

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.ink15
    }
    Item {
        width: 1
        height: 4
    }
    EffectRow {
        width: parent.width
        effects: root.effects
        rowId: "lowcut"
        title: I18n.t("Coupe-bas")
        tip: I18n.t("Enlève les grondements")
        summary: root.effects.lowcutSummary

        GumSegments {
            width: parent.width
            name: I18n.t("Coupe-bas")
            options: root.effects.lowcutSteps
            current: root.effects.lowcut
            onPicked: index => root.effects.lowcut = index
        }
    }
    EffectRow {
        id: tone
        width: parent.width
        effects: root.effects
        rowId: "tilt"
        title: I18n.t("Tonalité")
        tip: I18n.t("Plus sombre ou plus brillant")
        summary: root.effects.tiltSummary
        // A screen reader leaves a dash out.
        spoken: summary === "—" ? I18n.t("Neutre") : summary

        ToneSlider {
            width: parent.width
            tilt: root.effects.tilt
            range: root.effects.tiltRange
            summary: tone.spoken
            onMoved: amount => root.effects.tilt = amount
        }
    }
    EffectRow {
        width: parent.width
        effects: root.effects
        rowId: "comp"
        title: I18n.t("Compression")
        tip: I18n.t("Rapproche les sons forts des sons faibles")
        summary: root.effects.compSummary
        dots: root.effects.compDots
        spoken: strength.names[root.effects.compDots]

        GumSegments {
            id: strength
            width: parent.width
            name: I18n.t("Compression")
            options: root.effects.compSteps
            names: [I18n.t(root.effects.compNames[0]), I18n.t(root.effects.compNames[1]), I18n.t(root.effects.compNames[2]), I18n.t(root.effects.compNames[3])]
            current: root.effects.compDots
            onPicked: index => root.effects.comp = index
        }
    }
    EffectRow {
        width: parent.width
        effects: root.effects
        rowId: "reverb"
        title: I18n.t("Réverbération")
        tip: I18n.t("Ajoute une pièce autour du son")
        summary: root.effects.reverbSummary

        ReverbControls {
            width: parent.width
            effects: root.effects
        }
    }
    EffectSwitch {
        width: parent.width
        objectName: "plosiveRow"
        title: I18n.t("Anti-plosives")
        tip: I18n.t("Adoucit les « p » et les « b » près du micro")
        checked: root.effects.plosive
        onToggled: root.effects.plosive = !root.effects.plosive
    }
    EffectSwitch {
        width: parent.width
        objectName: "denoiseRow"
        title: I18n.t("Réduction de bruit")
        tip: I18n.t("Baisse le souffle et les bruits constants")
        checked: root.effects.denoise
        onToggled: root.effects.denoise = !root.effects.denoise
    }
    EffectRow {
        width: parent.width
        effects: root.effects
        rowId: "gain"
        title: I18n.t("Gain")
        tip: I18n.t("Niveau après les effets")
        summary: root.effects.gainSummary

        GainControls {
            width: parent.width
            effects: root.effects
        }
    }
    GumButton {
        objectName: "resetEffects"
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !root.effects.neutral
        text: I18n.t("Rétablir")
        color: Theme.active
        semibold: true
        onClicked: root.effects.reset()
    }
}
