import QtQuick
import Varnet

// The outline of a control that has the keyboard's focus.
Rectangle {
    required property Item control
    property color ink: Theme.accent

    anchors.fill: control
    anchors.margins: -3
    border.color: ink
    border.width: 2
    color: "transparent"
    radius: Theme.controlRadius + 3
    visible: control.visualFocus
}
