import QtQuick
import Velmora.Kit

// A small card that opens a menu of further commands.
Item {
    id: root
    required property string name
    signal clicked

    implicitWidth: 42
    implicitHeight: 42

    Card {
        anchors.fill: parent
    }
    RowButton {
        anchors.fill: parent
        radius: 12
        name: root.name
        tip: root.name
        Accessible.role: Accessible.ButtonMenu
        onClicked: root.clicked()

        Symbol {
            anchors.centerIn: parent
            name: "ellipsis"
            color: Theme.ink60
            size: 18
        }
    }
}
