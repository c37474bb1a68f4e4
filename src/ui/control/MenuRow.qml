import QtQuick
import Velmora.Kit

// One command of the footer with its shortcut.
RowButton {
    id: root
    required property string title
    required property string shortcut
    // The same, key by key.
    required property string spokenShortcut

    implicitHeight: 36
    name: title
    description: spokenShortcut
    ringGap: -4

    Label {
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: keys.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
    }
    Label {
        id: keys
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: root.shortcut
        color: Theme.soft
    }
}
