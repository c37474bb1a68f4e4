import QtQuick
import Velmora
import Velmora.Kit

// One effect: its title, how it is set now and, opened, its controls.
Column {
    id: root
    required property EffectsModel effects
    required property string rowId
    required property string title
    required property string summary
    // The summary in words.
    property string spoken: summary
    property string tip
    // Strength drawn as dots instead of the summary; none = -1 or 0.
    property int dots: 0
    default property alias controls: body.data
    readonly property bool open: effects.expanded === rowId

    objectName: rowId + "Row"

    RowButton {
        objectName: root.rowId + "Title"
        width: parent.width + 12
        x: -6
        height: 30
        radius: 6
        ringGap: 0
        name: root.title
        description: root.spoken
        tip: root.tip
        onClicked: root.effects.toggle(root.rowId)
        Accessible.checkable: true
        Accessible.checked: root.open

        Label {
            anchors.left: parent.left
            anchors.leftMargin: 6
            anchors.right: value.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            font.weight: root.open ? Font.DemiBold : Font.Normal
        }
        Item {
            id: value
            anchors.right: chevron.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            width: dotRow.visible ? dotRow.width : text.implicitWidth
            height: text.implicitHeight

            Label {
                id: text
                objectName: root.rowId + "Summary"
                visible: root.dots === 0
                text: root.summary
                color: Theme.soft
            }
            StrengthDots {
                id: dotRow
                anchors.verticalCenter: parent.verticalCenter
                visible: root.dots > 0
                count: root.dots
                color: Theme.ink60
            }
        }
        Symbol {
            id: chevron
            anchors.right: parent.right
            anchors.rightMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            name: root.open ? "chevron.down" : "chevron.right"
            color: Theme.ink60
            size: 14
        }
    }
    Column {
        id: body
        width: parent.width
        bottomPadding: 8
        visible: root.open
    }
}
