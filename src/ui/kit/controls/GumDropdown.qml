import QtQuick
import Velmora.Kit

// Shows the chosen one of a few options, and lists them all when it is tapped. Options are objects
// with `tag` and `label`.
Pressable {
    id: root
    required property var options
    required property string current
    readonly property bool open: popup.opened
    readonly property string label: menu.label(options, current)

    signal picked(string tag)

    implicitWidth: Math.max(120, shownLabel.implicitWidth + chevron.width + 28)
    implicitHeight: 28
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.ComboBox
    description: label
    Keys.onDownPressed: toggle()
    tip: shownLabel.truncated ? label : ""
    onClicked: toggle()
    onOptionsChanged: {
        if (open)
            menu.setOptions(options, current);
    }

    function toggle() {
        if (open) {
            popup.close();
            return;
        }
        menu.setOptions(options, current);
        popup.open(menu);
    }

    GumOptionsModel {
        id: menu
        onPicked: tag => root.picked(tag)
    }
    GumMenuPopup {
        id: popup
        anchor: root
        name: root.name
    }
    Rounded {
        id: shape
        anchors.fill: parent
        radius: 8
        color: Theme.paper
        outlineWidth: 1
        outlineColor: Theme.ink15

        Feedback {
            radius: shape.radius
            hovered: root.hovered
            down: root.down || root.open
        }
        FocusRing {
            control: root
            cornerRadius: shape.radius
        }
    }
    GumText {
        id: shownLabel
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.right: chevron.left
        anchors.rightMargin: 6
        height: parent.height
        text: root.label
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
    }
    Symbol {
        id: chevron
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.down"
        color: Theme.ink60
        size: 12
    }
}
