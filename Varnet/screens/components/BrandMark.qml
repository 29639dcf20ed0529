import QtQuick
import Varnet

// Two offset bars, a long and a short one: two tracks.
Item {
    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: false
    implicitHeight: Theme.symbol
    implicitWidth: 1.25 * Theme.symbol

    Rectangle {
        color: Theme.text
        height: parent.height * 0.34
        radius: height / 2
        width: parent.width * 0.8
        y: parent.height * 0.08
    }

    Rectangle {
        anchors.right: parent.right
        color: Theme.rec
        height: parent.height * 0.34
        radius: height / 2
        width: parent.width * 0.55
        y: parent.height * 0.58
    }
}
