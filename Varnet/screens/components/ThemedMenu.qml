import QtQuick
import QtQuick.Controls.Basic
import Varnet

// A menu of commands that pops up where it is asked for.
Menu {
    id: root

    margins: 2 * Theme.unit
    padding: Theme.unit

    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: Theme.surface
        implicitWidth: 13 * Theme.body.lineHeight // the longest entry fits at every font size
        radius: Theme.cardRadius
    }
    delegate: ThemedMenuItem {}
}
