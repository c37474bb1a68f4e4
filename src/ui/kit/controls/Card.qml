import QtQuick
import Velmora.Kit

// A card of the window; what is put into it stands in one column.
Rounded {
    id: root
    default property alias content: column.data
    property alias spacing: column.spacing
    property real horizontalPadding: 12
    property real verticalPadding: 10

    implicitWidth: column.implicitWidth + 2 * horizontalPadding
    implicitHeight: column.implicitHeight + 2 * verticalPadding
    radius: 12
    color: Theme.paper
    outlineWidth: 1
    outlineColor: Theme.ink15

    Column {
        id: column
        x: root.horizontalPadding
        y: root.verticalPadding
        width: root.width - 2 * root.horizontalPadding
    }
}
