import QtQuick
import Velmora.Kit

// What keys do in a menu: arrows, Home and End, folding, choosing, deleting, typing ahead.
QtObject {
    id: root
    required property GumMenuModel model
    required property int current
    property string typed

    signal moved(int row)
    signal dismiss

    property Timer typingPause: Timer {
        interval: 1000
        onTriggered: root.typed = ""
    }

    function press(event: var): bool {
        // A menu that is just closing has let go of its model.
        if (model === null || event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier))
            return false;
        switch (event.key) {
        case Qt.Key_Down:
            return moveTo(model.choosableAfter(current, 1));
        case Qt.Key_Up:
            return moveTo(model.choosableAfter(current < 0 ? model.rowCount() : current, -1));
        case Qt.Key_Home:
            return moveTo(model.choosableAfter(-1, 1));
        case Qt.Key_End:
            return moveTo(model.choosableAfter(model.rowCount(), -1));
        case Qt.Key_Right:
            model.setExpanded(current, true);
            return true;
        case Qt.Key_Left:
            return fold();
        case Qt.Key_Return:
        case Qt.Key_Enter:
            model.activate(current);
            return true;
        case Qt.Key_Delete:
            model.deleteRow(current);
            return true;
        case Qt.Key_Escape:
        case Qt.Key_Tab:
        case Qt.Key_Backtab:
            dismiss();
            return true;
        }
        return typeAhead(event.text);
    }

    function moveTo(row: int): bool {
        if (row >= 0)
            moved(row);
        return true;
    }

    // Folds the row, or goes to the one under which it was unfolded.
    function fold(): bool {
        const rows = model.rowCount();
        model.setExpanded(current, false);
        return rows === model.rowCount() ? moveTo(model.parentRow(current)) : true;
    }

    function typeAhead(text: string): bool {
        if (text === " " && typed === "") {
            model.activate(current);
            return true;
        }
        if (text === "" || text.charCodeAt(0) < 32)
            return false;
        typingPause.restart();
        typed += text;
        // One letter, also repeated, goes on to the next entry; more letters may stay.
        const row = typed.length > 1 ? model.choosableByPrefix(typed, current) : -1;
        return moveTo(row >= 0 ? row : model.choosableByPrefix(text, current + 1));
    }
}
