import QtQuick
import Varnet

// Stands in the middle of a place that has nothing to show.
ThemedText {
    anchors.centerIn: parent
    color: Theme.secondary
    horizontalAlignment: Text.AlignHCenter
    width: Math.min(22 * Theme.body.lineHeight, parent.width - 8 * Theme.unit)
    wrapMode: Text.Wrap
}
