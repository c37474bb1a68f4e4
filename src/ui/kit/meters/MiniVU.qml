import QtQuick
import Velmora.Kit

// A small level bar, from −60 dBFS to 0 dBFS.
LevelBar {
    width: implicitWidth
    height: implicitHeight
    trackColor: Theme.ink15
    opacity: active ? 1 : 0.5
}
