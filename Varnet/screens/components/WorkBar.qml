import QtQuick
import QtQuick.Controls.Basic
import Varnet

// How far work is, from 0 to 1. While nobody knows, a part of the bar glides to and fro, or all of it is tinted where
// the desktop wants nothing to move.
ProgressBar {
    id: root

    readonly property bool glides: indeterminate && Theme.moves

    background: Rectangle {
        color: Theme.track
        implicitHeight: Theme.symbol / 4
        radius: height / 2
    }
    contentItem: Item {
        implicitHeight: Theme.symbol / 4

        Rectangle {
            id: part

            color: Theme.accent
            height: parent.height
            opacity: root.indeterminate && !root.glides ? 0.5 : 1
            radius: height / 2
            width: root.glides ? parent.width / 4 : root.indeterminate ? parent.width : root.visualPosition * parent.width
        }

        SequentialAnimation {
            loops: Animation.Infinite
            running: root.glides && root.visible

            onRunningChanged: if (!running) part.x = 0

            NumberAnimation {
                duration: 1800
                easing.type: Easing.InOutSine
                from: 0
                property: "x"
                target: part
                to: root.contentItem.width * 0.75
            }

            NumberAnimation {
                duration: 1800
                easing.type: Easing.InOutSine
                from: root.contentItem.width * 0.75
                property: "x"
                target: part
                to: 0
            }
        }
    }
}
