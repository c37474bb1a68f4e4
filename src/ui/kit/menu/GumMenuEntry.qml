import QtQuick
import Velmora.Kit

// One line of a menu: a caption, a rule, or a row to choose.
FocusScope {
    id: root
    required enabled
    required property int index
    required property int kind
    required property string title
    required property string icon
    required property string symbol
    required property bool checked
    required property bool playing
    required property real indent
    required property bool expandable
    required property bool expanded
    required property bool acts
    required property bool deletable
    property bool isCurrent: false
    readonly property Item shown: kind === GumMenuModel.Action ? row : kind === GumMenuModel.Header ? caption : rule

    signal tap
    signal unfoldTap
    signal deleteTap

    implicitWidth: shown.implicitWidth
    implicitHeight: shown.implicitHeight

    GumMenuRow {
        id: row
        anchors.fill: parent
        focus: true
        visible: root.shown === row
        title: root.title
        icon: root.icon
        symbol: root.symbol
        checked: root.checked
        playing: root.playing
        expandable: root.expandable
        isExpanded: root.expanded
        acts: root.acts
        deletable: root.deletable
        indent: root.indent
        isCurrent: root.isCurrent
        onTap: root.tap()
        onUnfoldTap: root.unfoldTap()
        onDeleteTap: root.deleteTap()
    }
    GumText {
        id: caption
        visible: root.shown === caption
        x: 8
        width: parent.width - 16
        height: parent.height
        topPadding: 6
        text: root.title
        size: 11
        color: Theme.soft
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        bottomPadding: 4
    }
    Item {
        id: rule
        visible: root.shown === rule
        anchors.fill: parent
        implicitHeight: 9

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            x: 8
            width: parent.width - 16
            height: 1
            color: Theme.ink15
        }
    }
}
