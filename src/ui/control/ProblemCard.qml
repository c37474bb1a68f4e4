import QtQuick
import Velmora.Kit

// What went wrong, line by line. The text can be selected and copied; many lines scroll.
Rounded {
    id: root
    required property string text
    required property bool dismissable
    signal dismissed
    // A text takes this key for itself, even one that nobody can edit.
    signal undoPressed
    // What can be done about it; empty = nothing.
    property string action
    signal acted

    readonly property int maximumTextHeight: 140
    readonly property real textHeight: Math.min(words.implicitHeight, maximumTextHeight)

    implicitHeight: textHeight + 12 + (remedy.visible ? remedy.height + 8 : 0)
    radius: 12
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Keys.onEscapePressed: event => {
        event.accepted = dismissable;
        if (dismissable)
            dismissed();
    }
    color: Qt.alpha(Theme.coral, 0.12)
    outlineColor: Qt.alpha(Theme.coral, 0.4)
    outlineWidth: 1

    Symbol {
        id: mark
        x: 12
        y: 10
        name: "exclamationmark.triangle"
        color: Theme.alarm
        size: 18
    }
    ScrollArea {
        anchors.left: mark.right
        anchors.leftMargin: 8
        anchors.right: root.dismissable ? cross.left : parent.right
        anchors.rightMargin: root.dismissable ? 4 : 12
        anchors.top: parent.top
        anchors.topMargin: 6
        height: root.textHeight
        contentHeight: words.implicitHeight

        TextEdit {
            id: words
            objectName: "problemText"
            width: parent.width
            // One line is as high as a finger needs.
            topPadding: 4
            bottomPadding: 4
            text: root.text
            color: Theme.ink
            selectionColor: Theme.ocean
            selectedTextColor: "white"
            font.family: "Albert Sans"
            font.pointSize: Scales.fontSize(13)
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            readOnly: true
            selectByKeyboard: true
            activeFocusOnTab: true
            Keys.onPressed: event => {
                event.accepted = event.matches(StandardKey.Undo);
                if (event.accepted)
                    root.undoPressed();
            }
            selectByMouse: true
            activeFocusOnPress: true
            Accessible.role: Accessible.EditableText
            Accessible.name: I18n.t("Message")
            Accessible.readOnly: true
            Accessible.multiLine: true

            FocusRing {
                control: words
                cornerRadius: 4
                gap: 0
            }
        }
    }
    GumButton {
        id: remedy
        objectName: "actOnProblem"
        visible: root.action !== ""
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        text: root.action
        filled: true
        onClicked: root.acted()
    }
    GumButton {
        id: cross
        objectName: "dismissProblems"
        visible: root.dismissable
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.top: parent.top
        anchors.topMargin: 8
        symbol: "xmark"
        color: Theme.ink60
        name: I18n.t("Masquer")
        onClicked: root.dismissed()
    }
}
