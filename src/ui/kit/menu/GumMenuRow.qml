import QtQuick
import Velmora.Kit

// One entry of a menu that can be chosen.
Item {
    id: root
    required property string title
    property string icon
    property string symbol
    property bool checked: false
    property bool playing: false
    property bool expandable: false
    property bool isExpanded: false
    // Choosing it does more than unfolding it.
    property bool acts: true
    property bool deletable: false
    // The keyboard stands on it, or the pointer is over it.
    property bool isCurrent: false
    property real indent: 0
    readonly property bool hovering: hover.hovered
    readonly property bool showsDelete: deletable && (hovering || InputMode.touch || (isCurrent && InputMode.keyboard))
    // What is drawn beside the title, in words.
    readonly property string spokenMarks: {
        const words = [];
        if (playing)
            words.push(I18n.t("Du son en sort"));
        if (expandable)
            words.push(I18n.t("Sous-menu"), isExpanded ? I18n.t("Ouvert") : I18n.t("Fermé"));
        return words.join(", ");
    }

    signal tap
    signal unfoldTap
    signal deleteTap

    implicitWidth: leading.x + leading.width + 8 + titleText.implicitWidth + 16 + trailing.implicitWidth + 8
    implicitHeight: 28
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.MenuItem
    Accessible.name: title
    Accessible.description: spokenMarks
    Accessible.focusable: true
    Accessible.checkable: checked
    Accessible.checked: checked
    Accessible.onPressAction: tap()

    HoverHandler {
        id: hover
    }
    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: root.tap()
    }
    Feedback {
        radius: 6
        hovered: root.isCurrent
        down: area.pressed
    }
    Item {
        id: leading
        x: 8 + root.indent
        width: 16
        height: parent.height

        Image {
            id: picture
            anchors.centerIn: parent
            width: 16
            height: 16
            sourceSize.width: Math.ceil(width * Comfort.scale)
            sourceSize.height: Math.ceil(height * Comfort.scale)
            source: root.icon
        }
        Symbol {
            anchors.centerIn: parent
            visible: root.icon === "" || picture.status === Image.Error
            name: root.symbol
        }
    }
    GumText {
        id: titleText
        anchors.left: leading.right
        anchors.leftMargin: 8
        anchors.right: trailing.left
        anchors.rightMargin: 8
        height: parent.height
        text: root.title
        size: 12.5
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.rightMargin: 8
        height: parent.height
        spacing: 6

        Symbol {
            objectName: "checkmark"
            visible: root.checked
            anchors.verticalCenter: parent.verticalCenter
            name: "checkmark"
            size: 12
        }
        Symbol {
            objectName: "playing"
            visible: root.playing
            anchors.verticalCenter: parent.verticalCenter
            name: "playing"
            color: Theme.palm
            size: 12
        }
        Symbol {
            objectName: "chevron"
            visible: root.expandable
            anchors.verticalCenter: parent.verticalCenter
            name: root.isExpanded ? "chevron.down" : "chevron.right"
            color: Theme.ink60
            size: 12

            MouseArea {
                objectName: "unfold"
                anchors.centerIn: parent
                width: 28
                height: root.height
                enabled: root.expandable && root.acts
                onClicked: root.unfoldTap()
            }
        }
        Item {
            visible: root.deletable
            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24

            GumButton {
                objectName: "delete"
                anchors.fill: parent
                visible: root.showsDelete
                activeFocusOnTab: false
                name: I18n.t("Supprimer") + " — " + root.title
                tip: I18n.t("Supprimer")
                description: ""
                symbol: "xmark"
                symbolSize: 9
                color: Theme.ink40
                onClicked: root.deleteTap()
            }
        }
    }
}
