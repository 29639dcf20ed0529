import QtQuick
import Varnet

// A button among others: an outline and a word.
ThemedButton {
    id: root

    property color ring: Theme.accent // of the focus

    bottomPadding: Theme.unit
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    leftPadding: 3 * Theme.unit
    opacity: enabled ? 1 : 0.45
    rightPadding: 3 * Theme.unit
    topPadding: Theme.unit

    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: root.down || root.hovered ? Theme.raised : Theme.surface
        radius: Theme.controlRadius

        FocusRing {
            control: root
            ink: root.ring
            anchors.fill: parent
        }
    }
    contentItem: BareText {
        horizontalAlignment: Text.AlignHCenter
        text: root.text
        type: Theme.emphasis
    }
}
