pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Kit

// The whole control surface. Between the fixed top and bottom the strips scroll.
Item {
    id: root
    required property ControlWindowModel model
    property bool isWindow: true

    readonly property int margin: 16
    readonly property int spacing: 10
    readonly property real fixedHeight: top.height + spacing + bottom.height + 2 * margin
    // With the gap before them.
    readonly property real stripsHeight: stripColumn.implicitHeight > 0 ? stripColumn.implicitHeight + spacing : 0
    readonly property bool asking: savePrompt.opened || chooser.opened
    readonly property bool choosing: primaryMenu.opened || extraMenu.opened || presetsMenu.opened || presetFilesMenu.opened

    // What a menu asked for waits until the menu has closed and given the focus back.
    property bool promptWanted
    property bool chooserWanted
    function answerWishes(): void {
        if (choosing)
            return;
        if (promptWanted)
            savePrompt.ask(model.beginSavePreset());
        else if (chooserWanted)
            chooser.ask();
        promptWanted = false;
        chooserWanted = false;
    }

    // Whoever removes a strip by keyboard goes on at the next one.
    function passFocusOn(index: int, removed: Item): void {
        if (!hasFocus(removed))
            return;
        const next = stripList.itemAt(Math.min(index, stripList.count - 1)) as SourceStrip;
        if (next)
            next.takeFocus(0);
        else
            addSource.forceActiveFocus(Qt.OtherFocusReason);
    }

    // Itself or something in it.
    function hasFocus(part: Item): bool {
        let focused = Window.activeFocusItem;
        while (focused && focused !== part)
            focused = focused.parent;
        return focused !== null;
    }
    function stripWithFocus(): int {
        for (let index = 0; index < stripList.count; index++) {
            if (hasFocus(stripList.itemAt(index)))
                return index;
        }
        return -1;
    }

    // Control with an arrow goes from strip to strip at the same control, and out of them at both
    // ends; with Home and End, to the first and the last.
    function goTo(index: int): void {
        const from = stripList.itemAt(stripWithFocus()) as SourceStrip;
        const to = stripList.itemAt(index) as SourceStrip;
        if (to)
            to.takeFocus(from ? from.focusedStop() : -1);
        else if (index < 0)
            sourcePicker.takeFocus();
        else
            addSource.forceActiveFocus(Qt.TabFocusReason);
    }
    Keys.onPressed: event => {
        if ((event.modifiers & ~Qt.KeypadModifier) !== Qt.ControlModifier || asking)
            return;
        const last = stripList.count - 1;
        const here = stripWithFocus();
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Home:
            return goTo(0);
        case Qt.Key_End:
            return goTo(last);
        case Qt.Key_Down:
            return goTo(here + 1);
        case Qt.Key_Up:
            return goTo(here < 0 ? last : here - 1);
        }
        event.accepted = false;
    }

    // A strip that was added comes into view; many at once are a recall, which begins at its first.
    property int added: 0
    property Item newest: null
    function revealAdded(): void {
        if (added === 1 && newest)
            strips.revealSoon(newest, null);
        added = 0;
        newest = null;
    }

    // Enough for everything; with less the strips scroll, and below that the whole page.
    implicitWidth: 400
    implicitHeight: fixedHeight + stripsHeight
    readonly property real minimumHeight: fixedHeight + Math.min(stripsHeight, 96)

    ScrollArea {
        id: page
        anchors.fill: parent
        contentHeight: Math.max(height, root.minimumHeight)
        enabled: !root.asking

        Column {
            id: top
            x: root.margin
            y: root.margin
            width: root.width - 2 * root.margin
            spacing: root.spacing

            HeaderBar {
                width: parent.width
                running: root.model.running
                onToggled: root.model.toggleRunning()
            }
            WaveformView {
                objectName: "waveform"
                width: parent.width
                height: 28
                running: root.model.running
                still: Comfort.still
            }
            ProblemCard {
                id: problems
                objectName: "problemCard"
                width: parent.width
                visible: text !== ""
                text: root.model.problemText
                dismissable: root.model.canDismissProblems
                onDismissed: {
                    const goesOn = root.hasFocus(problems);
                    root.model.dismissProblems();
                    if (goesOn)
                        sourcePicker.takeFocus();
                }
                action: root.model.problemAction
                onActed: root.model.actOnProblem()
                onUndoPressed: root.model.undo.undo()
            }
            PickerButton {
                id: sourcePicker
                objectName: "sourcePicker"
                width: parent.width
                name: I18n.t("Choisir une source")
                caption: root.model.primaryCaption
                tip: I18n.t("Source principale : en choisir une autre la remplace")
                opened: primaryMenu.opened
                onClicked: primaryMenu.open(root.model.openPrimaryMenu())
            }
        }
        ScrollArea {
            id: strips
            objectName: "strips"
            y: top.y + top.height + root.spacing
            width: root.width
            height: Math.max(0, page.contentHeight - root.fixedHeight - root.spacing)
            contentHeight: stripColumn.implicitHeight

            Column {
                id: stripColumn
                x: root.margin
                width: root.width - 2 * root.margin
                spacing: root.spacing

                Repeater {
                    id: stripList
                    model: root.model.strips
                    onItemRemoved: (index, item) => root.passFocusOn(index, item)
                    onItemAdded: (index, item) => {
                        root.added++;
                        root.newest = item;
                        Qt.callLater(root.revealAdded);
                    }

                    SourceStrip {
                        required property int index
                        objectName: "strip" + index
                        onGrown: part => strips.revealSoon(this, part)
                        width: root.width - 2 * root.margin
                    }
                }
            }
        }
        Column {
            id: bottom
            x: root.margin
            y: page.contentHeight - root.margin - height
            width: root.width - 2 * root.margin
            spacing: root.spacing

            GumText {
                objectName: "openingText"
                width: parent.width
                visible: text !== ""
                text: root.model.openingText
                textFormat: Text.PlainText
                elide: Text.ElideMiddle
                size: 11
                color: Theme.soft
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
            AddSourceRow {
                id: addSource
                objectName: "addSource"
                width: parent.width
                onClicked: extraMenu.open(root.model.openExtraMenu())
            }
            Card {
                width: parent.width
                verticalPadding: 8

                VolumeRow {
                    objectName: "headphones"
                    width: parent.width
                    volume: root.model.headphones
                    tip: I18n.t("Ce que tu entends ; double-clic : 0 dB")
                }
                VolumeRow {
                    objectName: "stream"
                    width: parent.width
                    volume: root.model.stream
                    tip: I18n.t("Ce que les autres entendent ; double-clic : 0 dB")
                }
                EffectSwitch {
                    objectName: "allEffects"
                    width: parent.width
                    visible: root.model.hasEffects
                    title: I18n.t("Effets de toutes les sources")
                    tip: root.model.effectsOn ? I18n.t("Entendre le mix sans effets") : I18n.t("Entendre le mix avec ses effets")
                    checked: root.model.effectsOn
                    onToggled: root.model.effectsOn = !root.model.effectsOn
                }
            }
            Item {
                width: parent.width
                implicitHeight: presetPicker.implicitHeight

                PickerButton {
                    id: presetPicker
                    objectName: "presetPicker"
                    anchors.left: parent.left
                    anchors.right: presetFiles.left
                    anchors.rightMargin: 8
                    name: "Preset"
                    prefix: "Preset"
                    caption: root.model.activePresetName
                    tip: I18n.t("Rappeler ou enregistrer un setup")
                    opened: presetsMenu.opened
                    onClicked: presetsMenu.open(root.model.openPresetsMenu())
                }
                MoreButton {
                    id: presetFiles
                    objectName: "presetFiles"
                    anchors.right: parent.right
                    name: I18n.t("Importer et exporter des presets")
                    onClicked: presetFilesMenu.open(root.model.presetFiles.openMenu())
                }
            }
            Card {
                width: parent.width
                horizontalPadding: 0
                verticalPadding: 0

                MenuRow {
                    objectName: "settingsRow"
                    width: parent.width
                    title: I18n.t("Réglages…")
                    shortcut: "Ctrl+,"
                    spokenShortcut: I18n.t("Touches : {keys}").replace("{keys}", I18n.t("Contrôle") + " " + I18n.t("virgule"))
                    onClicked: root.model.openSettings()
                }
                Rectangle {
                    width: parent.width
                    height: 1
                    color: Theme.ink15
                }
                MenuRow {
                    objectName: "quitRow"
                    width: parent.width
                    title: I18n.t("Quitter Velmora")
                    shortcut: "Ctrl+Q"
                    spokenShortcut: I18n.t("Touches : {keys}").replace("{keys}", I18n.t("Contrôle") + " Q")
                    onClicked: root.model.quit()
                }
            }
        }
    }

    UndoBar {
        objectName: "undoBar"
        x: root.margin
        y: root.height - root.margin - height
        width: root.width - 2 * root.margin
        enabled: !root.asking
        undo: root.model.undo
        waiting: root.choosing || root.asking
        onDeparted: addSource.forceActiveFocus(Qt.OtherFocusReason)
    }
    GumMenuPopup {
        id: primaryMenu
        anchor: sourcePicker
        name: I18n.t("Choisir une source")
        onClosed: root.answerWishes()
    }
    GumMenuPopup {
        id: extraMenu
        anchor: addSource
        name: I18n.t("Ajouter une source")
        onClosed: root.answerWishes()
    }
    GumMenuPopup {
        id: presetsMenu
        anchor: presetPicker
        name: "Preset"
        onClosed: root.answerWishes()
    }
    GumMenuPopup {
        id: presetFilesMenu
        anchor: presetFiles
        name: I18n.t("Importer et exporter des presets")
        onClosed: root.answerWishes()
    }
    SavePresetPrompt {
        id: savePrompt
        objectName: "savePrompt"
        anchors.fill: parent
        onSaved: name => root.model.savePreset(name)
    }
    ApplicationChooser {
        id: chooser
        objectName: "chooser"
        anchors.fill: parent
        applications: root.model.chooser
    }

    Connections {
        target: root.model
        function onSavePromptRequested() {
            root.Window.window.requestActivate();
            root.promptWanted = true;
            root.answerWishes();
        }
        function onChooserRequested() {
            root.chooserWanted = true;
            root.answerWishes();
        }
    }
}
