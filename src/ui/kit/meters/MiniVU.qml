import QtQuick
import Velmora.Kit

// A small level bar, from −60 dBFS to 0 dBFS. A screen reader finds its level when it looks, and is
// not told of every change.
LevelBar {
    property string name
    readonly property string spokenName: name

    width: implicitWidth
    height: implicitHeight
    trackColor: Theme.meterGroove
    opacity: active ? 1 : 0.5
    Accessible.role: Accessible.ProgressBar
    Accessible.name: spokenName
}
