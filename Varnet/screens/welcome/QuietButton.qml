import QtQuick
import Varnet

// A button that holds itself back: words alone.
ThemedButton {
    id: root

    bottomPadding: Theme.unit
    leftPadding: 2 * Theme.unit
    rightPadding: 2 * Theme.unit
    topPadding: Theme.unit

    background: Rectangle {
        color: root.down || root.hovered ? Theme.raised : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            control: root
            anchors.fill: parent
        }
    }
    contentItem: BareText {
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: root.text
    }
}
