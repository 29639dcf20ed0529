import QtQuick
import Varnet

// Stands beside the turn that is being played.
Rectangle {
    anchors.left: parent.left
    anchors.leftMargin: -2 * Theme.unit
    color: Theme.accent
    height: parent.height - 4 * Theme.unit
    radius: 1.5
    width: 3
    y: 2 * Theme.unit
}
