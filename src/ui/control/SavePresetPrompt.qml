import QtQuick
import Velmora.Kit

// Asks for the name under which the present setup is kept.
Sheet {
    id: root
    signal saved(string name)

    function ask(suggestion: string): void {
        field.text = suggestion;
        open(field);
        field.selectAll();
    }
    function accept(): void {
        close();
        saved(field.text);
    }

    name: I18n.t("Enregistrer le setup actuel")
    onCancelled: close()

    Column {
        width: parent.width
        spacing: 12

        Label {
            width: parent.width
            text: root.name
            size: 15
            font.weight: Font.Bold
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            text: I18n.t("Sources, balances et volumes seront rappelés d'un clic. Un nom déjà utilisé met à jour ce preset.")
            color: Theme.soft
            size: 12
            lineHeight: 1.15
            wrapMode: Text.Wrap
        }
        TextEntry {
            id: field
            objectName: "presetName"
            placeholder: I18n.t("Nom du preset")
            onAccepted: root.accept()
        }
        Row {
            anchors.right: parent.right
            topPadding: 4
            spacing: 8

            GumButton {
                objectName: "cancelSave"
                text: I18n.t("Annuler")
                onClicked: root.cancelled()
            }
            GumButton {
                objectName: "confirmSave"
                text: I18n.t("Enregistrer")
                filled: true
                onClicked: root.accept()
            }
        }
    }
}
