import QtQuick
import Varnet

// Stands in the middle of a place that has nothing to show.
ThemedText {
    anchors.centerIn: parent
    color: Theme.faint
    horizontalAlignment: Text.AlignHCenter
    width: Math.min(110 * Theme.unit, parent.width - 8 * Theme.unit)
    wrapMode: Text.Wrap
}
