import QtQuick
import Velmora.Kit

// A single line to type into.
FocusScope {
    id: root
    required property string placeholder
    property alias text: input.text
    property string symbol
    signal accepted

    function selectAll(): void {
        input.selectAll();
    }

    implicitWidth: 220
    implicitHeight: 24

    Rounded {
        anchors.fill: parent
        radius: 6
        color: Theme.sand
        outlineColor: input.activeFocus ? Theme.ring : Theme.ink60
        outlineWidth: input.activeFocus ? 2 : 1
    }
    Symbol {
        id: sign
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbol
        color: Theme.ink60
        size: root.symbol === "" ? 0 : 14
    }
    Label {
        objectName: "placeholder"
        anchors.fill: input
        visible: input.text === "" && input.preeditText === ""
        text: root.placeholder
        color: Theme.soft
    }
    TextInput {
        id: input
        objectName: "input"
        readonly property string spokenName: root.placeholder
        anchors.left: root.symbol === "" ? parent.left : sign.right
        anchors.leftMargin: root.symbol === "" ? 8 : 6
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        focus: true
        activeFocusOnTab: true
        clip: true
        color: Theme.ink
        selectionColor: Theme.ocean
        selectedTextColor: "white"
        font.family: "Albert Sans"
        font.pointSize: Scales.fontSize(13)
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        Accessible.role: Accessible.EditableText
        Accessible.name: spokenName
        onAccepted: root.accepted()
    }
}
