import QtQuick
import Velmora.Kit

// What is not as it might be expected, in one quiet line, and what can be done about it.
Item {
    id: root
    required property string text
    // Empty where there is nothing to be done.
    property string remedy
    // It is to be seen at a glance.
    property bool strong
    // What it is about.
    property string subject
    readonly property string wordsName: objectName + "Text"
    signal acted

    visible: text !== ""
    implicitHeight: Math.max(words.implicitHeight, button.visible ? button.height : 0)

    GumText {
        id: words
        objectName: root.wordsName
        anchors.left: parent.left
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: button.visible ? 8 : 0
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        size: 11
        color: root.strong ? Theme.ink : Theme.soft
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    GumButton {
        id: button
        objectName: root.objectName + "Remedy"
        anchors.right: parent.right
        anchors.rightMargin: -12 // its own padding
        anchors.verticalCenter: parent.verticalCenter
        visible: root.remedy !== ""
        text: root.remedy
        name: root.remedy + " — " + root.subject
        color: Theme.active
        semibold: true
        onClicked: root.acted()
    }
}
