pragma ComponentBehavior: Bound
import QtQuick
import Velmora
import Velmora.Kit

// All installed applications by name; one is chosen.
Sheet {
    id: root
    required property ApplicationChooserModel applications

    function ask(): void {
        search.text = "";
        list.currentIndex = 0;
        open(search);
    }
    function choose(row: int): void {
        if (row < 0 || row >= list.count)
            return;
        close();
        applications.choose(row);
    }

    name: I18n.t("Choisir une application…")
    panelWidth: 340
    onCancelled: close()

    Column {
        width: parent.width
        spacing: 12

        Label {
            width: parent.width
            text: root.name
            size: 15
            font.weight: Font.Bold
        }
        TextEntry {
            id: search
            objectName: "applicationSearch"
            width: parent.width
            height: 30
            symbol: "magnifyingglass"
            placeholder: I18n.t("Rechercher")
            onTextChanged: {
                root.applications.filter = text;
                list.currentIndex = 0;
            }
            onAccepted: root.choose(list.currentIndex)
            Keys.onDownPressed: list.incrementCurrentIndex()
            Keys.onUpPressed: list.decrementCurrentIndex()
        }
        ListView {
            id: list
            objectName: "applicationList"
            width: parent.width
            height: Math.max(96, Math.min(300, root.height - 220))
            clip: true
            model: root.applications
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: true
            activeFocusOnTab: true
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: root.name
            Keys.onReturnPressed: root.choose(currentIndex)
            Keys.onEnterPressed: root.choose(currentIndex)

            delegate: ApplicationRow {
                required property int index
                width: ListView.view.width
                current: ListView.isCurrentItem
                onPicked: list.currentIndex = index
                onChosen: root.choose(index)
            }

            GumScrollBar {
                parent: list
                flickable: list
                inset: -4
            }
            Label {
                anchors.centerIn: parent
                objectName: "nothingFound"
                visible: list.count === 0
                text: I18n.t("Aucune application trouvée")
                color: Theme.soft
            }
        }
        Row {
            anchors.right: parent.right
            spacing: 8

            GumButton {
                objectName: "cancelChoice"
                text: I18n.t("Annuler")
                onClicked: root.cancelled()
            }
            GumButton {
                objectName: "confirmChoice"
                text: I18n.t("Choisir…")
                filled: true
                enabled: list.count > 0
                onClicked: root.choose(list.currentIndex)
            }
        }
    }
}
