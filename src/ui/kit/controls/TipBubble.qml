import QtQuick
import Velmora.Kit

// Shows the tip of a control of this window beside it; one for each window, over everything else.
Item {
    id: root
    readonly property int margin: 8
    readonly property int gap: 6
    readonly property Item control: Tips.control

    function isOurs(): bool {
        return control !== null && control.Window.window === Window.window;
    }
    function place(): void {
        const at = control.mapToItem(parent, 0, 0);
        const below = at.y + control.height + gap;
        const fitsBelow = below + height + margin <= parent.height;
        x = Math.round(Math.max(margin, Math.min(at.x + (control.width - width) / 2, parent.width - margin - width)));
        y = Math.round(Math.max(margin, fitsBelow ? below : at.y - gap - height));
    }

    objectName: "tip"
    visible: isOurs()
    z: 2000
    width: words.width + 16
    height: words.height + 10
    onControlChanged: {
        if (isOurs())
            place();
    }

    SoftShadow {
        cornerRadius: 6
    }
    Rounded {
        anchors.fill: parent
        radius: 6
        color: Theme.paper
        outlineWidth: 1
        outlineColor: Theme.ink40
    }
    GumText {
        id: words
        objectName: "tipText"
        x: 8
        y: 5
        width: Math.min(implicitWidth, 260, root.parent.width - 2 * root.margin - 16)
        text: Tips.words
        size: 12
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
