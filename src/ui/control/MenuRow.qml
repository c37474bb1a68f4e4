import QtQuick
import Velmora.Kit

// One command of the footer with its shortcut.
RowButton {
    id: root
    required property string title
    required property string shortcut

    readonly property string commandSign: "\u2318"

    implicitHeight: 36
    name: title
    description: shortcut
    ringGap: -4

    Label {
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: keys.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
    }
    // The program's fonts lack the command sign, so it is a drawing.
    Row {
        id: keys
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.shortcut.startsWith(root.commandSign)
            name: "command"
            size: 13
            color: Theme.ink60
        }
        Label {
            text: root.shortcut.replace(root.commandSign, "")
            color: Theme.ink60
        }
    }
}
