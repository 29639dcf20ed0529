import QtQuick
import Varnet

// When a meeting began and how long it was.
Item {
    id: root

    required property string time
    required property string duration
    required property bool lowered // the line beside which the duration stands makes room for a field

    implicitHeight: length.y + length.height
    implicitWidth: Math.max(20 * Theme.unit, clock.implicitWidth, length.implicitWidth)

    BareText {
        id: clock

        anchors.right: parent.right
        text: root.time
    }

    BareText {
        id: length

        anchors.right: parent.right
        color: Theme.faint
        text: root.duration
        type: Theme.caption
        y: clock.height + (root.lowered ? Theme.unit : 0)
    }
}
