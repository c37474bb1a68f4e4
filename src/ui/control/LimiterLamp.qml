import QtQuick
import Velmora.Kit

// Lit while a limiter works.
Item {
    id: root
    readonly property string words: I18n.t("Le limiteur travaille : baisse un peu les sources")

    implicitWidth: 11
    implicitHeight: 11
    Accessible.role: Accessible.Indicator
    Accessible.name: words
    onVisibleChanged: Tips.withdraw(root)
    Component.onDestruction: Tips.withdraw(root)

    HoverHandler {
        onHoveredChanged: {
            if (hovered)
                Tips.offer(root, root.words);
            else
                Tips.withdraw(root);
        }
    }
    Rounded {
        anchors.centerIn: parent
        width: 7
        height: 7
        color: Theme.coral
        radius: width / 2
    }
}
