import QtQuick
import Velmora.Kit

// A card that shows the present choice and opens a menu of others.
Item {
    id: root
    required property string name
    required property string caption
    // A small word before the caption; may be empty.
    property string prefix
    property string tip
    property bool opened
    signal clicked

    function takeFocus(): void {
        button.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: 42

    Card {
        anchors.fill: parent
    }
    RowButton {
        id: button
        anchors.fill: parent
        radius: 12
        name: root.name
        description: root.caption
        // Keys for the open menu come by way of this button.
        tip: root.opened ? "" : caption.truncated ? root.caption : root.tip
        Accessible.role: Accessible.ButtonMenu
        onClicked: root.clicked()

        Label {
            id: prefix
            anchors.baseline: caption.baseline
            x: 12
            visible: text !== ""
            text: root.prefix
            color: Theme.soft
            size: 11
            font.weight: Font.DemiBold
        }
        Label {
            id: caption
            objectName: "caption"
            anchors.left: prefix.visible ? prefix.right : parent.left
            anchors.leftMargin: prefix.visible ? 8 : 12
            anchors.right: chevron.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: root.caption
            elide: Text.ElideMiddle
            font.weight: Font.Bold
        }
        Symbol {
            id: chevron
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.down"
            size: 16
            rotation: root.opened ? 180 : 0
            Behavior on rotation {
                enabled: !Comfort.still
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutQuad
                }
            }
        }
    }
}
