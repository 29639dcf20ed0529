import QtQuick
import Varnet

// When a meeting began and how long it was.
Column {
    id: root

    required property string time
    required property string duration
    required property bool lowered // the line beside which the duration stands makes room for a field

    width: Math.max(20 * Theme.unit, clock.implicitWidth, length.implicitWidth)

    ThemedText {
        id: clock

        Accessible.ignored: true
        anchors.right: parent.right
        text: root.time
    }

    ThemedText {
        id: length

        Accessible.ignored: true
        anchors.right: parent.right
        color: Theme.faint
        text: root.duration
        topPadding: root.lowered ? Theme.unit : 0
        type: Theme.caption
    }
}
