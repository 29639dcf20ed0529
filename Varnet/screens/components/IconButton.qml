import QtQuick
import QtQuick.Templates as T
import Varnet

// A symbol that can be pressed. `text` says what it does, to screen readers and on hover.
ThemedButton {
    id: root

    required property string symbol

    Accessible.name: text
    T.ToolTip.delay: 600
    T.ToolTip.text: text
    T.ToolTip.visible: hovered && text !== ""
    opacity: enabled ? 1 : 0.45
    horizontalPadding: padding
    padding: 2 * Theme.unit

    background: Rectangle {
        color: root.down ? Theme.selection : root.hovered ? Theme.raised : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            control: root
            anchors.fill: parent
        }
    }
    contentItem: Item {
        implicitHeight: Theme.symbol
        implicitWidth: Theme.symbol

        Icon {
            anchors.centerIn: parent
            color: Theme.secondary
            mirror: root.mirrored && root.symbol === "back"
            symbol: root.symbol
        }
    }
}
