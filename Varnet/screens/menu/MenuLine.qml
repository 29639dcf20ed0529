import QtQuick
import QtQuick.Controls.Basic
import Varnet

// Parts the groups of a menu.
MenuSeparator {
    bottomPadding: Theme.unit
    leftPadding: 2 * Theme.unit
    rightPadding: 2 * Theme.unit
    topPadding: Theme.unit

    contentItem: Rectangle {
        color: Theme.line
        implicitHeight: 1
    }
}
