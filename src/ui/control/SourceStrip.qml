import QtQuick
import Velmora
import Velmora.Kit

// One source: its name, its level, its buttons, its gain and, opened, its effects.
Card {
    id: root
    required property SourceStripModel strip
    readonly property string sourceName: strip.nameIn(I18n.t("Entrée"), I18n.t("Entrées"))
    // Where several are called the same, a screen reader counts them.
    readonly property string spokenName: strip.twin > 1 ? sourceName + " (" + strip.twin + ")" : sourceName

    // What the keyboard can act on, in the order of Tab.
    readonly property list<Item> stops: [icon, effectsButton, monitoringButton, removeButton, fader]
    // The one it acts on now; none = -1.
    function focusedStop(): int {
        for (let stop = 0; stop < stops.length; stop++) {
            if (stops[stop].activeFocus)
                return stop;
        }
        return -1;
    }
    function takeFocus(stop: int): void {
        const wanted = stop >= 0 && stops[stop].visible ? stops[stop] : icon;
        wanted.forceActiveFocus(Qt.TabFocusReason);
    }

    // It became higher by its effects, for the sake of this part of it.
    signal grown(part: Item)
    property real heightBefore: 0
    onImplicitHeightChanged: {
        if (strip.fxOpen && implicitHeight > heightBefore)
            grown(panel.item ? (panel.item as EffectsPanel).openRow() : root);
        heightBefore = implicitHeight;
    }

    spacing: 4
    Accessible.role: Accessible.Grouping
    Accessible.name: I18n.t("Source") + " — " + spokenName

    Item {
        width: parent.width
        height: 28

        SourceIcon {
            id: icon
            objectName: "muteButton"
            anchors.verticalCenter: parent.verticalCenter
            x: -4
            strip: root.strip
            sourceName: root.spokenName
        }
        Label {
            anchors.left: icon.right
            anchors.leftMargin: 6
            anchors.right: level.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            objectName: "sourceName"
            text: root.sourceName
            // "… Entrée 1" and "… Entrée 2" differ at their end.
            elide: Text.ElideMiddle
            font.weight: Font.DemiBold
            color: root.strip.idle ? Theme.ink60 : Theme.ink
        }
        MiniVU {
            id: level
            objectName: "levelBar"
            anchors.right: buttons.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: I18n.t("Niveau") + " — " + root.spokenName
            active: !root.strip.muted
            level: root.strip.level
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: -4
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            GumButton {
                id: effectsButton
                objectName: "effectsButton"
                readonly property bool bypassed: root.strip.fxActive && root.strip.fxBypassed
                symbol: "slider.vertical.3"
                color: !root.strip.fxActive ? Theme.ink60 : bypassed ? Theme.ink40 : Theme.active
                name: I18n.t("Effets") + " — " + root.spokenName
                tip: I18n.t("Effets")
                description: !root.strip.fxActive ? I18n.t("Arrêté") : bypassed ? I18n.t("Contournés") : I18n.t("En marche")
                Accessible.checkable: true
                Accessible.checked: root.strip.fxOpen
                onClicked: root.strip.fxOpen = !root.strip.fxOpen

                MuteSlash {
                    objectName: "bypassSlash"
                    anchors.centerIn: parent
                    width: 16
                    height: 16
                    visible: effectsButton.bypassed
                }
            }
            GumButton {
                id: monitoringButton
                objectName: "monitoringButton"
                visible: root.strip.canMuteDirect
                symbol: root.strip.silenced ? "speaker.slash.fill" : "speaker.wave.2"
                color: root.strip.silenced ? Theme.silenced : Theme.ink40
                name: I18n.t("Couper la sortie directe") + " — " + root.spokenName
                tip: root.strip.directMuted ? I18n.t("Réentendre l'application chez toi (le mix l'entend toujours)") : I18n.t("Couper l'application chez toi seulement (le mix l'entend toujours)")
                Accessible.checkable: true
                Accessible.checked: root.strip.silenced
                onClicked: root.strip.directMuted = !root.strip.directMuted
            }
            GumButton {
                id: removeButton
                objectName: "removeButton"
                symbol: "xmark"
                color: Theme.ink60
                name: I18n.t("Retirer") + " — " + root.spokenName
                tip: I18n.t("Retirer du mix")
                onClicked: root.strip.remove()
            }
        }
    }
    BalanceFader {
        id: fader
        objectName: "gainFader"
        width: parent.width
        name: I18n.t("Gain") + " — " + root.spokenName
        tip: I18n.t("Niveau dans le mix ; double-clic : 0 dB")
        gain: root.strip.gain
        onGainEdited: gain => root.strip.gain = gain
    }
    NoticeLine {
        id: notice
        objectName: "sourceNotice"
        width: parent.width
        text: I18n.t(root.strip.notice)
        remedy: I18n.t(root.strip.remedy)
        subject: root.spokenName
        onActed: root.strip.applyRemedy()
    }
    // Made when it is opened first: a strip is light until then.
    Loader {
        id: panel
        width: parent.width
        active: root.strip.fxOpen
        visible: active
        Component.onCompleted: setSource("EffectsPanel.qml", {
            "effects": root.strip.effects
        })
    }
}
