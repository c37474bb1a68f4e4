import QtQuick
import Velmora.Kit

// What went wrong with the setting above, in words that can be read out.
GumText {
    width: parent ? parent.width : 0
    visible: text !== ""
    bottomPadding: 6
    size: 12
    color: Theme.alarm
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
