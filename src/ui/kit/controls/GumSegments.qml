pragma ComponentBehavior: Bound
import QtQuick
import Velmora.Kit

// A row of buttons of which one is chosen. An option of "●" signs is drawn as dots. `names` are the
// options in words, where they differ from what is shown.
Rounded {
    id: root
    required property list<string> options
    required property int current
    property list<string> names: options
    property string name

    signal picked(int index)

    implicitWidth: 240
    implicitHeight: 28
    radius: 8
    color: "transparent"
    outlineWidth: 1
    outlineColor: Theme.ink15
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Row {
        id: row
        anchors.fill: parent

        Repeater {
            id: segments
            model: root.options

            GumSegment {
                required property string modelData
                required property int index
                width: root.width / root.options.length
                height: root.height
                label: modelData
                name: root.names[index]
                chosen: index === root.current
                isStop: index === (root.current >= 0 && root.current < root.options.length ? root.current : 0)
                onClicked: root.picked(index)
                Keys.onLeftPressed: root.pickBeside(index, -1)
                Keys.onRightPressed: root.pickBeside(index, 1)
            }
        }
    }

    function pickBeside(index: int, step: int) {
        const next = index + step;
        if (next < 0 || next >= root.options.length)
            return;
        segments.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        root.picked(next);
    }
}
