import QtQuick
import Varnet

// Shows for a moment which turn was gone to: it flashes, or it is marked where the desktop wants nothing to move.
Rectangle {
    id: root

    border.color: Theme.accent
    border.width: 2
    color: Theme.selection
    radius: Theme.controlRadius

    SequentialAnimation {
        running: Theme.moves

        NumberAnimation { duration: Theme.motion; from: 0; property: "opacity"; target: root; to: 1 }
        PauseAnimation { duration: Theme.motion }
        NumberAnimation { duration: Theme.motion; property: "opacity"; target: root; to: 0 }
        PauseAnimation { duration: Theme.motion }
        NumberAnimation { duration: Theme.motion; property: "opacity"; target: root; to: 1 }
        PauseAnimation { duration: 5 * Theme.motion }
        NumberAnimation { duration: Theme.motion; property: "opacity"; target: root; to: 0 }
    }
}
