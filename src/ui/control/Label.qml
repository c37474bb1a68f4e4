import QtQuick
import Velmora.Kit

// A text whose words come from elsewhere: shown as given, and with an ellipsis where it does not
// fit.
GumText {
    elide: Text.ElideRight
    textFormat: Text.PlainText
}
